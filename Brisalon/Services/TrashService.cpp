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
    using Step = BackgroundTasks::Step;
    auto report = [this, life = std::weak_ptr(life_), completion = std::move(completion)](
                      std::vector<Measured> asked, Workspace::Recycled recycled) {
        if (life.expired())
            return;
        tasks_.start([asked = std::move(asked), recycled = std::move(recycled),
                      completion](const Task&) -> Step {
            return [completion, made = reportOf(recycled, asked)]() mutable {
                completion(std::move(made));
            };
        });
    };
    tasks_.start([this, items = std::move(items),
                  report = std::move(report)](const Task& task) mutable -> Step {
        return
            [this, report, asked = measured(items, task.stop), items = std::move(items)]() mutable {
                workspace_.recycle(std::move(items), [report, asked = std::move(asked)](
                                                         Workspace::Recycled recycled) mutable {
                    report(std::move(asked), std::move(recycled));
                });
            };
    });
}

} // namespace brisalon
