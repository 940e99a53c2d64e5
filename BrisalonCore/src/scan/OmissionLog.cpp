#include "scan/OmissionLog.h"

#include "BrisalonCore/ItemStatus.h"

namespace brisalon::detail {

void OmissionLog::noteVanished()
{
    if (!omissions_)
        return;
    const std::lock_guard lock(mutex_);
    ++omissions_->vanishedCount;
}

void OmissionLog::noteUnreadable(const FileURL& folder)
{
    if (!omissions_)
        return;
    const std::lock_guard lock(mutex_);
    ++omissions_->unreadableCount;
    if (omissions_->unreadable.size() == ScanOmissions::limit)
        return;
    const auto status = ItemStatus::read(folder.path());
    omissions_->unreadable.push_back(
        {folder, status ? status->mode : 0, status ? status->owner : 0});
}

void OmissionLog::noteSystemArea(const FileURL& item)
{
    if (!omissions_)
        return;
    const std::lock_guard lock(mutex_);
    if (omissions_->systemAreas.size() < ScanOmissions::limit)
        omissions_->systemAreas.push_back(item);
}

} // namespace brisalon::detail
