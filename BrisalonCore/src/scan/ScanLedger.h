#pragma once

#include "BrisalonCore/DiskScanner.h"
#include "scan/ItemReport.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <stop_token>

namespace brisalon::detail {

/// Counts what a scan's workers meet, and reports it.
///
/// Workers enter the items of a folder in batches. The order of entering is the
/// order of the scan: a report is made at exactly the item whose number calls
/// for one, with the bytes recorded before it, and no item is entered after a
/// cancellation. Thread-safe; reports are made one at a time.
class ScanLedger {
public:
    ScanLedger(const DiskScanner::ProgressCallback& report, std::int64_t reportEvery,
               std::stop_token cancellation);

    struct Item {
        const char* name;
        std::int64_t bytes;
    };

    /// Enters items of one folder, in order; `depth` and `report` as ItemReport has them,
    /// the report the worker's own. False when the scan was cancelled before the last of
    /// them. Throws what the callback throws.
    bool enter(const FileURL& folder, std::size_t depth, std::span<const Item> items,
               ItemReport& report);

    /// Records the bytes of a package, whose item was entered before it could be
    /// measured.
    void addBytes(std::int64_t bytes);

    /// The first and the last report, which name the root.
    void reportRoot(const FileURL& root);

private:
    const DiskScanner::ProgressCallback& report_;
    const std::uint64_t reportEvery_;
    const std::stop_token cancellation_;
    std::mutex mutex_;
    std::uint64_t count_ = 0;
    std::int64_t bytes_ = 0;
};

} // namespace brisalon::detail
