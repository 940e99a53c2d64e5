#pragma once

#include <chrono>

namespace brisalon::host {

/// What a thread has used of the processors since it began.
struct ThreadUsage {
    std::chrono::nanoseconds busy{};
    /// How often it gave its processor up by itself: to wait for a disk, a server,
    /// another thread. Not counted is when others pushed it aside.
    long waits = 0;

    /// The calling thread's. Takes a fraction of a microsecond.
    static ThreadUsage current() noexcept;
};

} // namespace brisalon::host
