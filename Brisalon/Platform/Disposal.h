#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace brisalon {

/// Calls what destroys something large, on one of the workers, and gives the
/// memory back to the system. Whoever drops the last of a large value is mostly on the
/// main thread, where taking it apart would hold up a frame.
void destroyElsewhere(std::function<void()> destruction);

/// Does that to a value.
template <typename T>
void disposeOf(T value)
{
    destroyElsewhere([held = std::make_shared<T>(std::move(value))]() mutable { held.reset(); });
}

} // namespace brisalon
