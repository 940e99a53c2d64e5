#include "Brisalon/Services/TrashService.h"

#include "Brisalon/Platform/Workspace.h"

#include "BrisalonCore/ItemStatus.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace brisalon {

namespace {

/// What is reported on: an item, and the bytes that it itself occupied before the move.
struct Measured {
    FileURL url;
    std::int64_t bytes;
};

std::vector<Measured> measured(const std::vector<TrashItem>& items, const std::stop_token& stop)
{
    std::vector<Measured> result;
    result.reserve(items.size());
    for (const TrashItem& item : items) {
        if (stop.stop_requested())
            break;
        const auto status = ItemStatus::read(item.url.path());
        result.push_back({item.url, status ? status->allocatedBytes : 0});
    }
    return result;
}

CleanReport reportOf(const Workspace::Recycled& recycled, const std::vector<Measured>& items)
{
    CleanReport report;
    std::unordered_set<std::string> moved;
    for (const Workspace::Moved& item : recycled.moved)
        moved.insert(item.source.path());
    report.movedCount = static_cast<std::int64_t>(moved.size());
    if (!recycled.error.empty())
        report.failures.push_back(recycled.error);
    // One that was asked for twice counts once.
    std::unordered_set<std::string> counted;
    for (const auto& [url, bytes] : items) {
        std::string path = url.path();
        if (!moved.contains(path))
            report.failures.push_back("Could not move " + std::string(url.lastPathComponent()) +
                                      " to Trash.");
        else if (counted.insert(std::move(path)).second)
            report.movedBytes += bytes;
    }
    return report;
}

} // namespace

TrashService::TrashService(Workspace& workspace) : workspace_(workspace) {}

void TrashService::moveToTrash(std::vector<TrashItem> items, Completion completion)
{
    // All that looks at each item happens elsewhere: a million of them take seconds.
    using Task = BackgroundTasks::Task;
    struct Move {
        std::vector<TrashItem> items;
        std::vector<Measured> asked;
        CleanReport report;
    };
    const auto made = std::make_shared<Move>();
    made->items = std::move(items);
    made->report.failures.push_back(BackgroundTasks::noMemory());
    const auto report = [this, made, completion,
                         life = std::weak_ptr(life_)](Workspace::Recycled recycled) {
        if (life.expired())
            return;
        made->report.movedCount = static_cast<std::int64_t>(recycled.moved.size());
        tasks_.start(
            [made, recycled = std::move(recycled)](const Task&) {
                const std::vector<Measured> asked = std::move(made->asked);
                made->report = reportOf(recycled, asked);
            },
            [made, completion](const std::stop_token&) { completion(std::move(made->report)); });
    };
    tasks_.start([made](const Task& task) { made->asked = measured(made->items, task.stop); },
                 [this, made, report, completion = std::move(completion)](const std::stop_token&) {
                     if (made->asked.size() < made->items.size())
                         completion(std::move(made->report));
                     else
                         workspace_.recycle(std::move(made->items), report);
                 });
}

} // namespace brisalon
