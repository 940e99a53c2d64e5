#include "Brisalon/Platform/NewestTask.h"

#include <utility>

namespace brisalon {

void NewestTask::start(std::function<void()> work, BackgroundTasks::Step last)
{
    cancel();
    newest_ = tasks_.start([work = std::move(work)](const BackgroundTasks::Task&) { work(); },
                           [last = std::move(last)](const std::stop_token& stop) {
                               if (!stop.stop_requested())
                                   last();
                           },
                           BackgroundTasks::noTime);
}

void NewestTask::cancel()
{
    newest_.request_stop();
}

} // namespace brisalon
