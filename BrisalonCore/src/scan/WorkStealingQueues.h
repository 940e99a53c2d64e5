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
#include <vector>

namespace brisalon::detail {

/// The tasks of workers, each with a queue of its own.
///
/// A worker takes its newest task, so it goes depth-first and few folders wait; one that
/// has none steals another's oldest, which are the nearest to the root and so the largest
/// pieces of work. It steals half of what there is: one at a time, each would have to be
/// reached anew from the root in a tree so deep that few of its folders are open, while
/// from the deepest of them the way leads up along all the others. Thread-safe.
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

    /// The next task for the worker, waiting for one if need be and calling `hasWaited`
    /// then; nothing once every task has been finished. Each task taken must be
    /// finished.
    template <typename HasWaited>
    std::optional<Task> take(std::size_t worker, const HasWaited& hasWaited)
    {
        for (;;) {
            const std::size_t seen = pushes_;
            if (auto task = newest(queues_[worker]))
                return task;
            const std::size_t workers = workers_;
            for (std::size_t i = 1; i < workers; ++i)
                if (auto task = steal(queues_[(worker + i) % workers], queues_[worker]))
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

    /// The task that the worker would take next from its own queue, if any.
    std::optional<Task> peek(std::size_t worker)
    {
        const std::lock_guard lock(queues_[worker].mutex);
        const auto& tasks = queues_[worker].tasks;
        return tasks.empty() ? std::nullopt : std::optional<Task>(tasks.back());
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
        std::deque<Task> tasks;
    };

    static std::optional<Task> newest(Queue& queue)
    {
        const std::lock_guard lock(queue.mutex);
        if (queue.tasks.empty())
            return std::nullopt;
        const Task task = queue.tasks.back();
        queue.tasks.pop_back();
        return task;
    }

    /// Moves the older half to the thief, and takes the newest of it.
    std::optional<Task> steal(Queue& queue, Queue& thief)
    {
        std::unique_lock lock(queue.mutex, std::defer_lock);
        std::unique_lock thiefLock(thief.mutex, std::defer_lock);
        std::lock(lock, thiefLock);
        auto& tasks = queue.tasks;
        if (tasks.empty())
            return std::nullopt;
        auto end = tasks.begin() + static_cast<std::ptrdiff_t>((tasks.size() + 1) / 2);
        try {
            thief.tasks.insert(thief.tasks.end(), tasks.begin(), end - 1);
        } catch (const std::bad_alloc&) {
            end = tasks.begin() + 1; // no room for more than what is taken at once
        }
        const Task task = *(end - 1);
        const bool isMore = end - 1 != tasks.begin();
        tasks.erase(tasks.begin(), end);
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
