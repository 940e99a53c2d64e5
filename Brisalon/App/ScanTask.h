#pragma once

#include "Brisalon/App/CoreValues.h"
#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFileEntry.h"

#include <QList>
#include <QObject>

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <variant>

namespace brisalon {

/// One scan on a thread of its own, from its start to what the model stores.
///
/// All that takes longer than a frame on a large tree happens on that thread: the
/// walk, the search for the largest files, the comparison with the previous tree.
/// What the thread has to say is handled on the thread that made the task, which
/// must have an event loop: one event for each report, in order, the end last.
///
/// Used from that thread. Destruction stops the scan and waits for its thread, which
/// takes as long as the scanner needs for the item that it is at; what has not been
/// handled by then is dropped.
class ScanTask final : private QObject {
public:
    /// What walks: DiskScanner::scan of a scanner, or a test's stand-in.
    using Scan =
        std::function<ScanResult(const FileURL& root, const DiskScanner::ProgressCallback& progress,
                                 std::stop_token cancellation)>;

    struct Finished {
        /// The new tree; the previous one itself when the new one equals it, so
        /// that whoever compares the two need not visit them again.
        FileNodeValue tree;
        QList<LargeFileEntry> largeFiles;
    };
    /// The text is the description of an unexpected error, such as no memory.
    using Outcome = std::variant<Finished, ScanError, TaskCancelled, std::string>;

    struct Request {
        FileURL root;
        /// The tree that the result will replace, if any.
        FileNodeValue previous;
        std::size_t largeFileLimit;
    };
    struct Handlers {
        std::function<void(const ScanProgress&)> progressed;
        /// May destroy the task.
        std::function<void(ScanTask&, Outcome)> ended;
    };

    /// Starts at once.
    ScanTask(Scan scan, Request request, Handlers handlers);

    /// Asks the scan to stop; it ends soon, in any of the four ways.
    void cancel() { thread_.request_stop(); }
    bool isCancelled() const { return thread_.get_stop_token().stop_requested(); }

private:
    using Report = std::variant<ScanProgress, Outcome>;

    void post(Report report);
    void customEvent(QEvent* event) override;

    const Handlers handlers_;
    std::mutex mutex_;
    /// What the thread has said and nobody has handled yet; an event is posted for
    /// each. Guarded by the mutex.
    std::deque<Report> reports_;
    /// Last, so that it has ended before what it writes to goes.
    std::jthread thread_;
};

} // namespace brisalon
