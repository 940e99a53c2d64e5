#pragma once

#include "Brisalon/App/CoreValues.h"
#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFileEntry.h"

#include <QList>

#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <variant>

namespace brisalon {

/// One scan from its start to what the model stores.
class ScanTask {
public:
    ScanTask() = delete;

    /// What walks: DiskScanner::scan of a scanner, or a test's stand-in.
    using Scan =
        std::function<ScanResult(const FileURL& root, const DiskScanner::ProgressCallback& progress,
                                 std::stop_token cancellation, ScanOmissions& omissions)>;

    struct Finished {
        /// The new tree; the previous one itself when the new one equals it, so
        /// that whoever compares the two need not visit them again.
        FileNodeHold tree;
        /// What is left out of it.
        std::shared_ptr<const ScanOmissions> omissions;
        /// What was selected when the scan began, and what takes its place: the node of
        /// the new tree that equals it, after the scan of a part the one with its path.
        FileNodeHold selectedBefore;
        FileNodeHold selectedNow;
        QList<LargeFileEntry> largeFiles;
        bool isOfPart;
    };
    /// The text is the description of an unexpected error, such as no memory.
    using Outcome = std::variant<Finished, ScanError, TaskCancelled, std::string>;

    struct Request {
        FileURL root;
        /// The tree that the result will replace, and what is selected, if any.
        FileNodeHold previous;
        FileNodeHold selected;
        /// What is left out of the previous tree: the scan of a part changes that.
        std::shared_ptr<const ScanOmissions> omissions;
        std::size_t largeFileLimit;
        /// Whether `root` is a folder of the previous tree, which only changes there.
        bool isOfPart;
    };

    /// Does all that takes longer than a frame on a large tree: the walk, the search for
    /// the largest files, the comparison with the previous tree. Any thread.
    static Outcome run(const Scan& scan, const Request& request,
                       const DiskScanner::ProgressCallback& progress, std::stop_token cancellation);
};

} // namespace brisalon
