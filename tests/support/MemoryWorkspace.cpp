#include "support/MemoryWorkspace.h"

#include <QMetaObject>

#include <utility>

namespace brisalon {

void MemoryWorkspace::recycle(std::vector<TrashItem> items, Completion completion)
{
    requests.push_back(items);
    moves_.push_back({std::move(items), std::move(completion)});
    const auto release = [this] { releaseMove(); };
    if (!holdsMoves)
        QMetaObject::invokeMethod(&context_, release, Qt::QueuedConnection);
}

bool MemoryWorkspace::releaseMove()
{
    if (moves_.empty())
        return false;
    Move move = std::move(moves_.front());
    moves_.pop_front();
    Recycled recycled;
    recycled.error = error;
    std::set<std::string> paths;
    for (const TrashItem& item : move.items) {
        const std::string path = item.url.path();
        if (!refusedPaths.contains(path) && paths.insert(path).second)
            recycled.moved.push_back(
                {item.url, FileURL("/trash/files/" + std::to_string(paths.size()))});
    }
    move.completion(std::move(recycled));
    return true;
}

void MemoryWorkspace::reveal(const FileURL& item, Started started)
{
    revealed.push_back(item);
    started(startsPrograms);
}

void MemoryWorkspace::openTerminal(const FileURL& folder, Started started)
{
    terminals.push_back(folder);
    started(startsPrograms);
}

bool MemoryWorkspace::openAddress(std::string_view address)
{
    addresses.emplace_back(address);
    return !refusedAddresses.contains(addresses.back());
}

} // namespace brisalon
