#pragma once

#include "BrisalonCore/FileNode.h"
#include "BrisalonCore/ScanError.h"
#include "BrisalonCore/ScanOmissions.h"
#include "BrisalonCore/ScanProgress.h"

#include <functional>
#include <stop_token>
#include <variant>

namespace brisalon {

/// The outcome of a scan that was cancelled before it began.
struct TaskCancelled {
    friend bool operator==(const TaskCancelled&, const TaskCancelled&) = default;
};

using ScanResult = std::variant<FileNode, ScanError, TaskCancelled>;

/// Turns a folder into a tree of sized nodes.
///
/// Sizes are allocated bytes, counted once for each path that leads to them
/// (hard links several times); folders themselves count nothing. Symbolic links
/// are neither followed nor recorded, the places named by SkipRules neither
/// recorded nor entered, packages measured whole, mounts of kernel and network
/// file systems not entered. What cannot be read is passed over.
///
/// A small value without state between scans; several scans may run at once.
struct DiskScanner {
    /// Called from the scan's worker threads, one call at a time, in ascending
    /// order of visitedCount. It must not block: the scan waits for it.
    using ProgressCallback = std::function<void(const ScanProgress&)>;

    /// Files with fewer allocated bytes are folded into their folder's aggregate.
    std::int64_t smallFileThreshold;

    /// A report is made whenever the item count is a multiple of this (0: never,
    /// -1: always), beside the first (count 0) and the last.
    std::int64_t progressEvery;

    /// Scans `root` and blocks the calling thread until the last worker has
    /// stopped. Symbolic links in `root` are resolved; every URL in the tree is
    /// below the resolved root.
    ///
    /// `cancellation` is the calling task's: a stop requested before the call
    /// yields TaskCancelled and no report; one that a worker notices (each looks
    /// before every item) yields ScanError::cancelled, with no further report. A
    /// stop after the last item was met changes nothing. A package is one item,
    /// however large.
    ///
    /// `omissions`, if given, is emptied and told what the tree of this scan leaves out.
    ///
    /// A root that exists but cannot be read yields an empty folder. Throws only what
    /// the callback throws, std::bad_alloc, and std::system_error when it cannot be told
    /// whether the root exists, or when folders cannot be opened because descriptors have
    /// run out and nobody gives any back.
    ScanResult scan(const FileURL& root, const ProgressCallback& progress,
                    std::stop_token cancellation = {}, ScanOmissions* omissions = nullptr) const;

    /// Scans one folder of a scan's tree anew, by the rules of that scan, and returns the
    /// whole tree with what is there now: the same as if all had been scanned anew and
    /// nothing outside that folder had changed. It shares the rest with `tree`. Without the
    /// folder, if that is gone or something else has its name.
    ///
    /// `omissions`, if given, are what the scan of `tree` left out, and become what the
    /// returned tree does.
    ///
    /// Reports and fails as a scan of the folder does; with ScanError::rootMissing only when
    /// the tree's root is gone, or the tree has no such folder.
    ScanResult rescan(const FileNode& tree, const FileURL& folder, const ProgressCallback& progress,
                      std::stop_token cancellation = {}, ScanOmissions* omissions = nullptr) const;
};

} // namespace brisalon
