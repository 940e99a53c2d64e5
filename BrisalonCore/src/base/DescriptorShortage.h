#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace brisalon::detail {

/// Want of descriptors: the process or the whole system has none left, or no memory
/// for one. All members concern the whole process; any thread.
///
/// Three things help, in this order: what is open only to save time is given up for
/// what has to be opened (Descriptor::open sees to that); who still is refused waits,
/// holding nothing, until others are done with theirs; where there are no others, it
/// is an error.
class DescriptorShortage {
public:
    DescriptorShortage() = delete;

    /// Whether that is what this error of the system means.
    static bool isReasonOf(int error) noexcept;

    /// Closes some of what can be done without; false when there is nothing (more) of
    /// that kind. Must not open anything.
    using Relief = bool (*)() noexcept;
    static void setRelief(Relief relief) noexcept { relief_ = relief; }
    static bool relieve() noexcept;

    /// Notes the error with which the calling thread was refused one all the same.
    static void noteRefusal(int error) noexcept;

    /// Held by who has something open and will close it without opening more: as long
    /// as there are such, waiting helps.
    class Use {
    public:
        Use() noexcept { ++uses_; }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
        ~Use();
    };

    /// Runs `attempt` until it was not refused a descriptor. A refused attempt must leave
    /// nothing open. Before another it waits; those who wait take turns, because two that
    /// each hold what the other lacks would wait forever. False when it ended early since
    /// `isPointless` was true.
    ///
    /// Throws std::system_error with the system's error when nobody gives anything back.
    template <typename Attempt>
    static bool outlast(Attempt attempt, const std::function<bool()>& isPointless)
    {
        return refusalOf(attempt) == 0 ||
               outlastRefusal([&attempt] { return refusalOf(attempt); }, isPointless);
    }

private:
    template <typename Attempt>
    static int refusalOf(Attempt& attempt)
    {
        (void)takeRefusal();
        attempt();
        return takeRefusal();
    }
    static bool outlastRefusal(const std::function<int()>& attempt,
                               const std::function<bool()>& isPointless);
    static int takeRefusal() noexcept;

    static inline std::atomic<Relief> relief_ = nullptr;
    static inline std::atomic<int> uses_ = 0;
    static inline std::atomic<int> waiting_ = 0;
    static inline std::mutex mutex_;
    static inline std::condition_variable closed_; ///< a use has ended
    static inline std::condition_variable turn_;   ///< nobody tries
    static inline bool isTried_ = false;
};

} // namespace brisalon::detail
