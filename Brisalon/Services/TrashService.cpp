#include "Brisalon/Services/TrashService.h"

#include "Brisalon/Platform/Workspace.h"

#include "BrisalonCore/ItemStatus.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace brisalon {

namespace {

/// The bytes that an item itself occupies, by its path.
using Sizes = std::unordered_map<std::string, std::int64_t>;

Sizes measured(const std::vector<TrashItem>& items, const std::stop_token& stop)
{
    Sizes sizes;
    for (const TrashItem& item : items) {
        if (stop.stop_requested())
            break;
        const auto status = ItemStatus::read(item.url.path());
        sizes.insert_or_assign(item.url.path(), status ? status->allocatedBytes : 0);
    }
    return sizes;
}

CleanReport reportOf(const Workspace::Recycled& recycled, const std::vector<FileURL>& urls,
                     const Sizes& sizes)
{
    CleanReport report;
    std::unordered_set<std::string> moved;
    for (const Workspace::Moved& item : recycled.moved) {
        const auto [path, isNew] = moved.insert(item.source.path());
        if (const auto size = sizes.find(*path); size != sizes.end() && isNew)
            report.movedBytes += size->second;
    }
    report.movedCount = static_cast<std::int64_t>(moved.size());
    if (!recycled.error.empty())
        report.failures.push_back(recycled.error);
    for (const FileURL& url : urls) {
        if (!moved.contains(url.path()))
            report.failures.push_back("Could not move " + std::string(url.lastPathComponent()) +
                                      " to Trash.");
    }
    return report;
}

} // namespace

TrashService::TrashService(Workspace& workspace) : workspace_(workspace) {}

void TrashService::moveToTrash(std::vector<TrashItem> items, Completion completion)
{
    // Thousands of items on a slow disk take longer to measure than a frame.
    tasks_.start([this, items = std::move(items),
                  completion = std::move(completion)](const std::stop_token& stop) {
        return [this, items, completion, sizes = measured(items, stop)] {
            std::vector<FileURL> urls;
            for (const TrashItem& item : items)
                urls.push_back(item.url);
            workspace_.recycle(items, [life = std::weak_ptr(life_), completion, urls,
                                       sizes](const Workspace::Recycled& recycled) {
                if (!life.expired())
                    completion(reportOf(recycled, urls, sizes));
            });
        };
    });
}

} // namespace brisalon
