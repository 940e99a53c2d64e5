#pragma once

#include "analysis/HogAutomaton.h"

#include <string_view>

namespace brisalon::detail {

/// What the classifier has to remember of a folder's path in order to classify
/// what lies in it: which tests everything below already passes, and which it
/// passes as soon as the next components fit.
///
/// A walk carries it from folder to folder, so classifying an item costs a look
/// at its name only; the result is exactly that of searching the whole path.
///
/// A small value; any thread.
class HogTrail {
public:
    /// The trail of a folder, given its whole path. The path need not be
    /// normalised; the empty one counts as "/".
    static HogTrail of(std::string_view path) noexcept;

    /// The trail before the first component of a path that has no leading slash.
    static HogTrail ofNoFolder() noexcept { return HogTrail(HogAutomaton::start()); }

    /// The trail of the folder of that name inside this one.
    HogTrail entering(std::string_view folderName) const noexcept;

    /// The trail when this folder is tagged as a cache.
    HogTrail tagged() const noexcept;

    /// The kind of the item of that name inside this folder. An item that is itself
    /// tagged has the kind that it would have in a tagged folder.
    HogKind classify(std::string_view name) const noexcept;

private:
    explicit HogTrail(const HogAutomaton::State& state) noexcept : state_(state) {}

    HogAutomaton::State state_;
};

} // namespace brisalon::detail
