#include "scan/CrewSize.h"

#include <algorithm>

namespace brisalon::detail {

using namespace std::chrono_literals;

namespace {

/// A worker's account is closed this often.
constexpr auto period = 1ms;

/// How long each worker's accounts must be on average for a judgement, and how often it
/// must have waited by then to count as waiting for the storage.
constexpr auto term = 4ms;
constexpr long fewestWaits = 3;

constexpr double worthwhile = 1.1;

} // namespace

void CrewSize::Account::restart() noexcept
{
    time_ = Clock::now();
    usage_ = host::ThreadUsage::current();
}

std::size_t CrewSize::note(Account& account) noexcept
{
    if (size_ == most_ || Account::Clock::now() - account.time_ < period)
        return size_;
    const Account before = account;
    account.restart();
    const std::lock_guard lock(mutex_);
    time_ += account.time_ - before.time_;
    busy_ += account.usage_.busy - before.usage_.busy;
    waits_ += account.usage_.waits - before.usage_.waits;
    if (time_ >= term * size_.load())
        judge();
    return size_;
}

void CrewSize::judge() noexcept
{
    const auto workers = static_cast<long>(size_.load());
    if (busy_ * 2 > time_ || waits_ < fewestWaits * workers) {
        answers_ = 0;
    } else {
        const double seconds = std::chrono::duration<double>(time_).count();
        const double answers = static_cast<double>(waits_ * workers) / seconds;
        if (answers > worthwhile * answers_) {
            answers_ = answers;
            size_ = std::min(size_ * 2, most_);
        }
    }
    time_ = busy_ = {};
    waits_ = 0;
}

} // namespace brisalon::detail
