#include "Brisalon/Platform/BackgroundTasks.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

namespace brisalon {

BackgroundTasks::~BackgroundTasks()
{
    // All at once, so that they stop side by side, before each is waited for.
    for (Running& running : running_)
        running.thread.request_stop();
    running_.clear();
}

std::stop_source BackgroundTasks::start(Work work, LastStep last,
                                        std::chrono::milliseconds patience)
{
    Running& running = running_.emplace_back();
    running.last = std::move(last);
    running.thread =
        std::jthread([this, &running, work = std::move(work),
                      end = std::list<Said>{{&running, {}}}](const std::stop_token& stop) mutable {
            try {
                Task task;
                task.stop = stop;
                task.report_ = [this, &running](Step step) { say({{&running, std::move(step)}}); };
                work(task);
            } catch (const std::bad_alloc&) {
                // The last step says so.
            }
            say(std::move(end));
        });
    std::stop_source stop = running.thread.get_stop_source();
    if (patience == std::chrono::milliseconds(0))
        return stop;

    const auto isHis = [&running](const Said& said) { return said.speaker == &running; };
    std::unique_lock lock(mutex_);
    const bool hasEnded = hasSaid_.wait_for(lock, patience, [&] {
        return std::ranges::any_of(said_,
                                   [&](const Said& said) { return isHis(said) && !said.step; });
    });
    std::list<Said> steps;
    for (auto next = said_.begin(); hasEnded && next != said_.end();) {
        const auto said = next++;
        if (isHis(*said))
            steps.splice(steps.end(), said_, said);
    }
    lock.unlock();
    for (const Said& said : steps)
        doStep(said);
    return stop;
}

std::string BackgroundTasks::noMemory()
{
    return std::generic_category().message(ENOMEM);
}

void BackgroundTasks::say(std::list<Said> said)
{
    {
        const std::lock_guard lock(mutex_);
        said_.splice(said_.end(), said);
    }
    hasSaid_.notify_all();
    for (bool isPosted = false; !isPosted;) {
        try {
            QCoreApplication::postEvent(this, new QEvent(QEvent::User));
            isPosted = true;
        } catch (const std::bad_alloc&) {
            // Nobody else would ever say it: until there is memory again.
            std::this_thread::yield();
        }
    }
}

void BackgroundTasks::customEvent(QEvent*)
{
    std::unique_lock lock(mutex_);
    // What was waited for has been done without its event.
    if (said_.empty())
        return;
    const Said said = std::move(said_.front());
    said_.pop_front();
    lock.unlock();
    doStep(said);
}

void BackgroundTasks::doStep(const Said& said)
{
    if (said.step)
        return said.step();
    const auto ended =
        std::ranges::find(running_, said.speaker, [](const Running& running) { return &running; });
    const LastStep last = std::move(ended->last);
    const std::stop_token stop = ended->thread.get_stop_token();
    ended->thread.join();
    running_.erase(ended);
    last(stop);
}

} // namespace brisalon
