#include "Brisalon/Platform/BackgroundTasks.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <utility>

namespace brisalon {

BackgroundTasks::~BackgroundTasks()
{
    // All at once, so that they stop side by side, before each is waited for.
    for (Task& task : tasks_)
        task.thread.request_stop();
    tasks_.clear();
}

void BackgroundTasks::start(Work work)
{
    Task& task = tasks_.emplace_back();
    task.thread = std::jthread([this, &task, work = std::move(work)](std::stop_token stop) {
        task.finish = work(std::move(stop));
        task.isDone = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    });
}

void BackgroundTasks::customEvent(QEvent*)
{
    // Whichever task it is: there is one event for each.
    const auto task = std::ranges::find_if(tasks_, [](const Task& t) { return t.isDone.load(); });
    if (task == tasks_.end())
        return;
    task->thread.join();
    const Finish finish = std::move(task->finish);
    tasks_.erase(task);
    finish();
}

} // namespace brisalon
