#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace brisalon::detail {

/// The tasks of a fixed set of workers, each with a queue of its own.
///
/// A worker takes its newest task, so it goes depth-first and few folders wait;
/// one that has none steals another's oldest, which is the nearest to the root
/// and so the largest piece of work. Thread-safe.
template <typename Task>
class WorkStealingQueues {
public:
    explicit WorkStealingQueues(std::size_t workers) : queues_(workers) {}

    std::size_t workerCount() const noexcept { return queues_.size(); }

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

    /// The next task for the worker, waiting for one if need be; nothing once
    /// every task has been finished. Each task taken must be finished.
    std::optional<Task> take(std::size_t worker)
    {
        for (;;) {
            const std::size_t seen = pushes_;
            if (auto task = newest(queues_[worker]))
                return task;
            for (std::size_t i = 1; i < queues_.size(); ++i)
                if (auto task = oldest(queues_[(worker + i) % queues_.size()]))
                    return task;
            if (unfinished_ == 0)
                return std::nullopt;
            std::unique_lock lock(sleep_);
            ++sleepers_;
            wake_.wait(lock, [&] { return pushes_ != seen || unfinished_ == 0; });
            --sleepers_;
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

    static std::optional<Task> oldest(Queue& queue)
    {
        const std::lock_guard lock(queue.mutex);
        if (queue.tasks.empty())
            return std::nullopt;
        const Task task = queue.tasks.front();
        queue.tasks.pop_front();
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
    std::atomic<std::size_t> unfinished_{0};
    std::atomic<std::size_t> pushes_{0};
    std::atomic<std::size_t> sleepers_{0};
    std::mutex sleep_;
    std::condition_variable wake_;
};

} // namespace brisalon::detail
