#include "support/ScanGate.h"

#include "Brisalon/App/AppState.h"

#include <chrono>
#include <utility>

namespace brisalon {

void ScanGate::State::pass(std::int64_t visitedCount, const std::stop_token& cancellation)
{
    std::unique_lock lock(mutex);
    if (!isClosed || visitedCount < holdsAfter)
        return;
    ++waiting;
    changed.notify_all();
    changed.wait(lock, cancellation, [this] { return !isClosed; });
    --waiting;
}

ScanGate::ScanGate() : state_(std::make_shared<State>()) {}

void ScanGate::holdAfter(std::int64_t visitedCount)
{
    const std::lock_guard lock(state_->mutex);
    state_->isClosed = true;
    state_->holdsAfter = visitedCount;
}

void ScanGate::open()
{
    const std::lock_guard lock(state_->mutex);
    state_->isClosed = false;
    state_->changed.notify_all();
}

bool ScanGate::waitForScan() const
{
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, std::chrono::seconds(30),
                                    [this] { return state_->waiting > 0; });
}

bool ScanGate::waitForEnd() const
{
    std::unique_lock lock(state_->mutex);
    const bool hasEnded = state_->changed.wait_for(lock, std::chrono::seconds(30),
                                                   [this] { return state_->ended > 0; });
    state_->ended -= hasEnded;
    return hasEnded;
}

ScanTask::Scan ScanGate::scan(ScanTask::Scan inner) const
{
    // Lives as long as the scan's thread, which ends once all has been told.
    struct Witness {
        std::shared_ptr<State> state;
        ~Witness()
        {
            const std::lock_guard lock(state->mutex);
            ++state->ended;
            state->changed.notify_all();
        }
    };
    if (!inner)
        inner = [](const FileURL& root, const DiskScanner::ProgressCallback& progress,
                   std::stop_token cancellation, ScanOmissions& omissions) {
            return AppState::scanner.scan(root, progress, std::move(cancellation), &omissions);
        };
    return [state = state_, inner = std::move(inner)](
               const FileURL& root, const DiskScanner::ProgressCallback& progress,
               std::stop_token cancellation, ScanOmissions& omissions) {
        thread_local const Witness witness{state};
        const auto report = [&](const ScanProgress& reported) {
            progress(reported);
            state->pass(reported.visitedCount, cancellation);
        };
        ScanResult outcome = inner(root, report, cancellation, omissions);
        state->pass(finished, cancellation);
        return outcome;
    };
}

} // namespace brisalon
