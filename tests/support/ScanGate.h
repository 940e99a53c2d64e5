#pragma once

#include "Brisalon/App/ScanTask.h"

#include <condition_variable>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>

namespace brisalon {

/// A gate in the way of real scans: a scan that passes through it stands still at
/// chosen moments until it is let on, so that what happens during a scan can be
/// pictured and tested without depending on time.
///
/// A scan that is cancelled is always let on. Any thread; copies are one gate.
class ScanGate {
public:
    /// Open: scans pass without stopping.
    ScanGate();

    /// From now on a scan stops in the first report that has visited at least so
    /// many items, and again before it returns.
    void holdAfter(std::int64_t visitedCount);
    /// From now on a scan stops only when its tree is finished, before it returns.
    void holdResult() { holdAfter(finished); }
    /// Lets everything on, and what comes later too.
    void open();

    /// Waits until a scan stands at the gate; false when none came within a
    /// generous time.
    bool waitForScan() const;
    /// Waits until one more scan has ended, its thread with it, so that all that it
    /// had to tell is on its way; false when none did within a generous time.
    bool waitForEnd() const;

    /// The scanner's scan, or that one, through this gate.
    ScanTask::Scan scan(ScanTask::Scan inner = {}) const;

private:
    struct State {
        std::mutex mutex;
        std::condition_variable_any changed;
        bool isClosed = false;
        std::int64_t holdsAfter = 0;
        int waiting = 0;
        int ended = 0;

        void pass(std::int64_t visitedCount, const std::stop_token& cancellation);
    };

    static constexpr std::int64_t finished = std::numeric_limits<std::int64_t>::max();

    std::shared_ptr<State> state_;
};

} // namespace brisalon
