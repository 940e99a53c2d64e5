#pragma once

#include "Brisalon/Platform/BackgroundTasks.h"

#include <functional>
#include <stop_token>

namespace brisalon {

/// Work in the background of which only the newest counts: what is started takes the
/// place of what still runs, whose last step is then not done.
///
/// Belongs to the thread that made it, as BackgroundTasks.
class NewestTask final {
public:
    /// The last step is done on the owner's thread when the work has ended, however that
    /// was; before this returns, when that takes no time.
    void start(std::function<void()> work, BackgroundTasks::Step last);
    void cancel();

private:
    std::stop_source newest_{std::nostopstate};
    BackgroundTasks tasks_;
};

} // namespace brisalon
