#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <new>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace brisalon::detail {

/// The tasks of workers, each with a queue of its own.
///
/// A worker takes its newest task, so it goes depth-first and few folders wait; one that
/// has none steals from another, as many at once as it may, so that it need not come
/// again soon. Thread-safe.
template <typename Task>
class WorkStealingQueues {
public:
    explicit WorkStealingQueues(std::size_t mostWorkers) : queues_(mostWorkers) {}

    /// Lets so many workers in, and never fewer than before.
    void admit(std::size_t workers) noexcept { workers_ = workers; }

    /// Whether some worker has nothing to do.
    bool isAnyIdle() const noexcept { return sleepers_ > 0; }

    /// Adds tasks to the worker's own queue, from which it must take one next.
    void push(std::size_t worker, std::span<const Task> tasks)
    {
        {
            const std::lock_guard lock(queues_[worker].mutex);
            auto& queue = queues_[worker].tasks;
            queue.insert(queue.end(), tasks.begin(), tasks.end());
            unfinished_ += tasks.size();
        }
        ++pushes_;
        // The worker itself takes one: waking others for that one would only cost
        // time, in a chain of folders for each of them.
        wake(std::min<std::size_t>(tasks.size() - 1, sleepers_));
    }

    /// The worker's newest task, if it has one. Each task taken must be finished.
    std::optional<Task> take(std::size_t worker)
    {
        Queue& queue = queues_[worker];
        const std::lock_guard lock(queue.mutex);
        if (queue.tasks.empty())
            return std::nullopt;
        const Task task = queue.tasks.back();
        queue.tasks.pop_back();
        return task;
    }

    using Tasks = std::deque<Task>;

    /// A task for a worker that has none, waiting for one if need be and calling
    /// `hasWaited` then; nothing once every task has been finished. `share` says which of
    /// another's tasks (there is one at least) the worker may have, from a first to before
    /// a last, or none.
    template <typename Share, typename HasWaited>
    std::optional<Task> steal(std::size_t worker, const Share& share, const HasWaited& hasWaited)
    {
        for (;;) {
            const std::size_t seen = pushes_;
            const std::size_t workers = workers_;
            for (std::size_t i = 1; i < workers; ++i)
                if (auto task = stealFrom(queues_[(worker + i) % workers], queues_[worker], share))
                    return task;
            if (unfinished_ == 0)
                return std::nullopt;
            std::unique_lock lock(sleep_);
            ++sleepers_;
            wake_.wait(lock, [&] { return pushes_ != seen || unfinished_ == 0; });
            --sleepers_;
            lock.unlock();
            hasWaited();
        }
    }

    /// Marks one task that was taken as dealt with, its own tasks pushed.
    void finish()
    {
        if (--unfinished_ == 0)
            wake(queues_.size());
    }

private:
    struct Queue {
        std::mutex mutex;
        Tasks tasks;
    };

    /// Moves the share to the thief, and takes the newest of it.
    template <typename Share>
    std::optional<Task> stealFrom(Queue& queue, Queue& thief, const Share& share)
    {
        std::unique_lock lock(queue.mutex, std::defer_lock);
        std::unique_lock thiefLock(thief.mutex, std::defer_lock);
        std::lock(lock, thiefLock);
        if (queue.tasks.empty())
            return std::nullopt;
        auto [first, last] = share(std::as_const(queue.tasks));
        if (first == last)
            return std::nullopt;
        try {
            thief.tasks.insert(thief.tasks.end(), first, last - 1);
        } catch (const std::bad_alloc&) {
            first = last - 1; // no room for more than what is taken at once
        }
        const Task task = *(last - 1);
        const bool isMore = first != last - 1;
        queue.tasks.erase(first, last);
        lock.unlock();
        thiefLock.unlock();
        if (isMore) {
            ++pushes_;
            wake(std::min<std::size_t>(1, sleepers_));
        }
        return task;
    }

    void wake(std::size_t workers)
    {
        if (workers == 0)
            return;
        {
            const std::lock_guard lock(sleep_);
        }
        for (; workers > 0; --workers)
            wake_.notify_one();
    }

    std::vector<Queue> queues_;
    std::atomic<std::size_t> workers_{1};
    std::atomic<std::size_t> unfinished_{0};
    std::atomic<std::size_t> pushes_{0};
    std::atomic<std::size_t> sleepers_{0};
    std::mutex sleep_;
    std::condition_variable wake_;
};

} // namespace brisalon::detail
