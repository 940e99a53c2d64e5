#include "scan/ScanLedger.h"

#include "base/SaturatingSum.h"

#include <utility>

namespace brisalon::detail {

namespace {

std::uint64_t magnitude(std::int64_t value) noexcept
{
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

} // namespace

ScanLedger::ScanLedger(const DiskScanner::ProgressCallback& report, std::int64_t reportEvery,
                       std::stop_token cancellation)
    : report_(report), reportEvery_(magnitude(reportEvery)), cancellation_(std::move(cancellation))
{
}

bool ScanLedger::enter(const FileURL& folder, std::size_t depth, std::span<const Item> items,
                       ItemReport& report)
{
    if (items.empty())
        return true;
    const std::lock_guard lock(mutex_);
    if (cancellation_.stop_requested())
        return false;
    for (const Item& item : items) {
        ++count_;
        if (reportEvery_ != 0 && count_ % reportEvery_ == 0) {
            if (cancellation_.stop_requested())
                return false;
            report_(report.of(folder, depth, item.name, static_cast<std::int64_t>(count_), bytes_));
            if (&item != &items.back() && cancellation_.stop_requested())
                return false;
        }
        bytes_ = saturatingSum(bytes_, item.bytes);
    }
    return true;
}

void ScanLedger::addBytes(std::int64_t bytes)
{
    const std::lock_guard lock(mutex_);
    bytes_ = saturatingSum(bytes_, bytes);
}

void ScanLedger::reportRoot(const FileURL& root)
{
    const std::lock_guard lock(mutex_);
    report_({static_cast<std::int64_t>(count_), root.path(), bytes_});
}

} // namespace brisalon::detail
