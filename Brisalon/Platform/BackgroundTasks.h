#pragma once

#include <QObject>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <stop_token>
#include <thread>

namespace brisalon {

/// Work that goes on beside its owner's thread, tells the owner how far it is, can be
/// cancelled, and hands over what came of it.
///
/// Belongs to the thread that made it, which must have an event loop. Each task has a
/// thread of its own, so one that hangs on a slow disk holds up no other.
class BackgroundTasks final : private QObject {
public:
    /// Something that is done on the owner's thread.
    using Step = std::function<void()>;

    /// What the work knows of its task; valid until it returns.
    class Task {
    public:
        /// Whether it has been cancelled. It ends all the same by its last step.
        std::stop_token stop;

        /// Has the step done, in its turn, while the work goes on.
        void report(Step step) const { report_(std::move(step)); }

    private:
        friend class BackgroundTasks;
        std::function<void(Step)> report_;
    };
    /// Returns the last step. The work itself is destroyed on its thread, and with it
    /// what would take long to destroy.
    using Work = std::function<Step(const Task&)>;

    BackgroundTasks() = default;
    /// Cancels all work and waits for it; steps that are not done yet are dropped.
    ~BackgroundTasks() override;

    /// Starts the work at once. Its steps are done from the event loop, in order, and
    /// may start further work or destroy this. Work that ends within `patience` is
    /// waited for, and its steps are done before this returns: what takes no time then
    /// needs no event loop. Returns what cancels the work.
    std::stop_source start(Work work, std::chrono::milliseconds patience = {});

private:
    struct Said {
        const std::jthread* speaker;
        Step step;
        bool isLast;
    };

    void say(Said said);
    void customEvent(QEvent* event) override;
    void doStep(Said said);

    std::mutex mutex_;
    std::condition_variable hasSaid_;
    /// What the threads have said and nobody has done yet; an event is posted for each.
    /// Guarded by the mutex.
    std::deque<Said> said_;
    /// Last, so that they have ended before what they write to goes.
    std::list<std::jthread> threads_;
};

} // namespace brisalon
