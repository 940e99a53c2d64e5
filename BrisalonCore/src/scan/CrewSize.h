#pragma once

#include "host/ThreadUsage.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <mutex>

namespace brisalon::detail {

/// How many workers a walk should have: it follows the storage.
///
/// A folder that the system has in memory is read at the speed of the processors, and
/// more workers than these only cost. One that a disk, a network or a program has to
/// deliver makes its worker wait; as long as the storage answers several as quickly as
/// one, more workers are proportionately faster. So the number starts at that of the
/// processors, and each time that
/// - the workers had no processor for more than half of the time, and
/// - they gave it up by themselves several times each, as one does who waits for the
///   storage, and not one who was pushed aside by other programs,
/// it doubles, up to a bound; until a doubling made the storage answer less than a
/// tenth more requests in the same time. What counts is the answers, not the folders:
/// between places that are in memory and places that are not, the speed changes by far
/// more than any number of workers could explain.
///
/// Found with: 174,000 items of a virtual disk whose caches were dropped took 1,180 ms
/// with 2 threads, 900 with 4, 520 with 8, 490 with 16 and 490 with 32; in memory, 16
/// threads took 3 % longer than 2.
///
/// Thread-safe.
class CrewSize {
public:
    /// From so many to at most so many workers.
    CrewSize(std::size_t first, std::size_t most) noexcept : size_(first), most_(most) {}

    /// What a worker's thread has done since it was last asked. Used by that thread.
    class Account {
    public:
        /// Begins anew, with what was done before left out: looking for work.
        void restart() noexcept;

    private:
        friend class CrewSize;
        using Clock = std::chrono::steady_clock;
        Clock::time_point time_;
        host::ThreadUsage usage_;
    };

    std::size_t get() const noexcept { return size_; }

    /// Told by a worker after each folder, while none is without work. Returns how many
    /// there should be now.
    std::size_t note(Account& account) noexcept;

private:
    void judge() noexcept;

    std::atomic<std::size_t> size_;
    const std::size_t most_;

    std::mutex mutex_;
    // Of all workers since the last judgement.
    std::chrono::nanoseconds time_{};
    std::chrono::nanoseconds busy_{};
    long waits_ = 0;
    double answers_ = 0; ///< per second, before the number was last doubled
};

} // namespace brisalon::detail
