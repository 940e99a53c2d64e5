#include "scan/OpenFolders.h"

#include <utility>
#include <vector>

namespace brisalon::detail {

using host::OpenFolder;

OpenFolders::OpenFolders(std::string_view rootPath, std::size_t budget)
    : root_(std::make_shared<const OpenFolder>(OpenFolder::at(rootPath))), budget_(budget)
{
}

OpenFolders::Claim::Claim(OpenFolders& folders, WalkFolder& folder) noexcept
    : folders_(folders), folder_(folder)
{
}

OpenFolders::Claim::~Claim()
{
    const std::lock_guard lock(folders_.mutex_);
    if (--folder_.access.unopened == 0)
        folders_.drop(folder_);
}

OpenFolder OpenFolders::Claim::open(const char* name)
{
    std::shared_ptr<const OpenFolder> handle;
    {
        const std::lock_guard lock(folders_.mutex_);
        handle = folder_.access.handle;
    }
    if (!handle)
        handle = folders_.reopen(folder_);
    return handle ? handle->child(name) : OpenFolder();
}

void OpenFolders::keep(WalkFolder& folder, OpenFolder handle, std::size_t waiting)
{
    auto shared = std::make_shared<const OpenFolder>(std::move(handle));
    const std::lock_guard lock(mutex_);
    hold(folder, std::move(shared));
    folder.access.unopened = waiting;
}

void OpenFolders::forget(WalkFolder& folder) noexcept
{
    const std::lock_guard lock(mutex_);
    if (folder.access.unopened > 0) {
        folder.access.unopened = 0;
        drop(folder);
    }
}

void OpenFolders::returnTo(WalkFolder& next, const WalkFolder& leaf, const OpenFolder& handle)
{
    {
        const std::lock_guard lock(mutex_);
        if (next.access.handle)
            return;
    }
    OpenFolder reached = handle.parent();
    for (const WalkFolder* above = leaf.parent; above != &next && reached.isValid();
         above = above->parent)
        reached = reached.parent();
    const auto identity = reached.identity();

    auto shared = std::make_shared<const OpenFolder>(std::move(reached));
    const std::lock_guard lock(mutex_);
    if (identity && identity == next.access.identity && next.access.unopened > 0 &&
        !next.access.handle) {
        hold(next, std::move(shared));
        --closed_;
    }
}

std::shared_ptr<const OpenFolder> OpenFolders::reopen(WalkFolder& folder)
{
    std::vector<const WalkFolder*> path; // from the folder upwards
    std::shared_ptr<const OpenFolder> handle;
    std::optional<ItemIdentity> before;
    {
        const std::lock_guard lock(mutex_);
        const WalkFolder* above = &folder;
        for (; above->parent && !above->access.handle; above = above->parent)
            path.push_back(above);
        handle = above->access.handle ? above->access.handle : root_;
        before = folder.access.identity;
    }
    for (auto next = path.rbegin(); next != path.rend(); ++next) {
        handle = std::make_shared<const OpenFolder>(handle->child((*next)->name()));
        if (!handle->isValid())
            return nullptr;
    }
    const auto identity = handle->identity();
    const std::lock_guard lock(mutex_);
    if (folder.access.handle)
        return folder.access.handle; // another worker was quicker
    if (!identity || identity != before)
        return nullptr;
    hold(folder, handle);
    --closed_;
    return handle;
}

void OpenFolders::hold(WalkFolder& folder, std::shared_ptr<const OpenFolder> handle)
{
    folder.access.place = held_.insert(held_.end(), &folder);
    folder.access.handle = std::move(handle);
    if (held_.size() <= budget_)
        return;
    // Workers that use the handle right now keep it open for that long.
    WalkFolder& longest = *held_.front();
    longest.access.identity = longest.access.handle->identity();
    longest.access.handle.reset();
    held_.pop_front();
    ++closed_;
}

void OpenFolders::drop(WalkFolder& folder) noexcept
{
    if (folder.access.handle) {
        held_.erase(folder.access.place);
        folder.access.handle.reset();
    } else {
        --closed_;
    }
}

} // namespace brisalon::detail
