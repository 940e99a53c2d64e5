#include "base/DescriptorShortage.h"

#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

namespace brisalon::detail {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// What other parts of the program, or other programs, close is not announced.
constexpr auto pause = 5ms;

/// How long to wait for those others.
constexpr auto patience = 1s;

thread_local int refusal = 0;

} // namespace

bool DescriptorShortage::isReasonOf(int error) noexcept
{
    return error == EMFILE || error == ENFILE || error == ENOMEM;
}

bool DescriptorShortage::relieve() noexcept
{
    const Relief relief = relief_;
    return relief && relief();
}

int DescriptorShortage::takeRefusal() noexcept
{
    return std::exchange(refusal, 0);
}

void DescriptorShortage::noteRefusal(int error) noexcept
{
    refusal = error;
}

DescriptorShortage::Use::~Use()
{
    --uses_;
    if (waiting_ == 0)
        return;
    {
        const std::lock_guard lock(mutex_);
    }
    closed_.notify_all();
}

bool DescriptorShortage::outlastRefusal(const std::function<int()>& attempt,
                                        const std::function<bool()>& isPointless)
{
    std::unique_lock lock(mutex_);
    struct Turn {
        std::unique_lock<std::mutex>& lock;
        bool isMine = false;
        explicit Turn(std::unique_lock<std::mutex>& held) : lock(held) { ++waiting_; }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn()
        {
            --waiting_;
            if (!isMine)
                return;
            if (!lock.owns_lock())
                lock.lock();
            isTried_ = false;
            turn_.notify_one();
        }
    } turn(lock);
    while (isTried_) {
        if (isPointless())
            return false;
        turn_.wait_for(lock, pause);
    }
    turn.isMine = isTried_ = true;

    auto lastHope = Clock::now();
    for (;;) {
        lock.unlock();
        const bool wasInUse = uses_ > 0;
        const int error = attempt();
        if (error == 0)
            return true;
        if (isPointless())
            return false;
        if (wasInUse)
            lastHope = Clock::now();
        else if (Clock::now() - lastHope > patience)
            throw std::system_error(error, std::generic_category());
        lock.lock();
        closed_.wait_for(lock, pause);
    }
}

} // namespace brisalon::detail
