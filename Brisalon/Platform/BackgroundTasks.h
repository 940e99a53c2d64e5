#pragma once

#include <QObject>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <stop_token>
#include <string>
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

    /// What is done on the owner's thread when the work has ended, however that was. Told
    /// whether it has been cancelled.
    using LastStep = std::function<void(const std::stop_token& stop)>;

    /// What the work knows of its task; valid until it returns.
    class Task {
    public:
        std::stop_token stop; ///< whether it has been cancelled

        /// Has the step done, in its turn, while the work goes on.
        void report(Step step) const { report_(std::move(step)); }

    private:
        friend class BackgroundTasks;
        std::function<void(Step)> report_;
    };
    /// Destroyed on its thread, and with it what would take long to destroy. Ends early,
    /// without a word, where there is no memory.
    using Work = std::function<void(const Task&)>;

    /// How long what is said to take no time may take: less than two frames.
    static constexpr std::chrono::milliseconds noTime{30};

    BackgroundTasks() = default;
    /// Cancels all work and waits for it; steps that are not done yet are dropped.
    ~BackgroundTasks() override;

    /// Starts the work at once. Its steps are done from the event loop, in order, and
    /// may start further work or destroy this. Work that ends within `patience` is
    /// waited for, and its steps are done before this returns: what takes no time then
    /// needs no event loop. Returns what cancels the work.
    ///
    /// What comes of the work lies in something that both share, made before: it says what
    /// is to be said when there was no memory, until the work puts its result there. So the
    /// last step never fails to come.
    std::stop_source start(Work work, LastStep last, std::chrono::milliseconds patience = {});

    /// What is to be said when there was no memory.
    static std::string noMemory();

private:
    struct Running {
        LastStep last;
        std::jthread thread;
    };
    struct Said {
        const Running* speaker;
        Step step; ///< none: it has ended
    };

    void say(std::list<Said> said);
    void customEvent(QEvent* event) override;
    void doStep(const Said& said);

    std::mutex mutex_;
    std::condition_variable hasSaid_;
    /// What the threads have said and nobody has done yet; an event is posted for each.
    /// Guarded by the mutex.
    std::list<Said> said_;
    /// Last, so that they have ended before what they write to goes.
    std::list<Running> running_;
};

} // namespace brisalon
