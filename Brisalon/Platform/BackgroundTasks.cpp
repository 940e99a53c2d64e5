#include "Brisalon/Platform/BackgroundTasks.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <utility>
#include <vector>

namespace brisalon {

BackgroundTasks::~BackgroundTasks()
{
    // All at once, so that they stop side by side, before each is waited for.
    for (std::jthread& thread : threads_)
        thread.request_stop();
    threads_.clear();
}

std::stop_source BackgroundTasks::start(Work work, std::chrono::milliseconds patience)
{
    std::jthread& thread = threads_.emplace_back();
    thread = std::jthread([this, &thread, work = std::move(work)](std::stop_token stop) {
        Task task;
        task.stop = std::move(stop);
        task.report_ = [this, &thread](Step step) { say({&thread, std::move(step), false}); };
        say({&thread, work(task), true});
    });
    const std::stop_source stop = thread.get_stop_source();
    if (patience == std::chrono::milliseconds(0))
        return stop;

    const auto isHis = [&thread](const Said& said) { return said.speaker == &thread; };
    std::unique_lock lock(mutex_);
    const bool hasEnded = hasSaid_.wait_for(lock, patience, [&] {
        return std::ranges::any_of(said_,
                                   [&](const Said& said) { return isHis(said) && said.isLast; });
    });
    std::vector<Said> steps;
    if (hasEnded) {
        for (Said& said : said_) {
            if (isHis(said))
                steps.push_back(std::move(said));
        }
        std::erase_if(said_, isHis);
    }
    lock.unlock();
    for (Said& said : steps)
        doStep(std::move(said));
    return stop;
}

void BackgroundTasks::say(Said said)
{
    {
        const std::lock_guard lock(mutex_);
        said_.push_back(std::move(said));
    }
    hasSaid_.notify_all();
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void BackgroundTasks::customEvent(QEvent*)
{
    std::unique_lock lock(mutex_);
    // What was waited for has been done without its event.
    if (said_.empty())
        return;
    Said said = std::move(said_.front());
    said_.pop_front();
    lock.unlock();
    doStep(std::move(said));
}

void BackgroundTasks::doStep(Said said)
{
    if (said.isLast) {
        const auto ended = std::ranges::find_if(
            threads_, [&](const std::jthread& thread) { return &thread == said.speaker; });
        ended->join();
        threads_.erase(ended);
    }
    said.step();
}

} // namespace brisalon
