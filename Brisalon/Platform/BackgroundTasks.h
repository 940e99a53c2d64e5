#pragma once

#include <QObject>

#include <atomic>
#include <functional>
#include <list>
#include <stop_token>
#include <thread>

namespace brisalon {

/// Work that goes on beside the main thread and ends on it.
///
/// Belongs to the thread that made it, which must have an event loop. Each task has
/// a thread of its own, so one that hangs on a slow disk holds up no other.
class BackgroundTasks final : private QObject {
public:
    /// What is left to do on the owner's thread once the work is done.
    using Finish = std::function<void()>;
    using Work = std::function<Finish(std::stop_token)>;

    BackgroundTasks() = default;
    /// Asks all work to stop and waits for it; what is left to finish is dropped.
    ~BackgroundTasks() override;

    /// Starts the work at once. Its finish is called from the event loop, and may
    /// start further work or destroy this.
    void start(Work work);

private:
    struct Task {
        Finish finish;
        std::atomic<bool> isDone = false;
        /// Last, so that it has ended before what it writes to goes.
        std::jthread thread;
    };

    void customEvent(QEvent* event) override;

    std::list<Task> tasks_;
};

} // namespace brisalon
