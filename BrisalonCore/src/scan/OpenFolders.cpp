#include "scan/OpenFolders.h"

#include "BrisalonCore/OpenFileLimit.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace brisalon::detail {

using host::OpenFolder;

OpenFolders::OpenFolders(OpenFolder root, std::function<bool()> isAbandoned)
    : root_(std::make_shared<const OpenFolder>(std::move(root))),
      isAbandoned_(std::move(isAbandoned)),
      budget_(budget())
{
    DescriptorShortage::setRelief(giveUpHalf);
}

std::size_t OpenFolders::budget() noexcept
{
    constexpr std::size_t least = 8;
    // More would seldom save a second opening, and cost the kernel memory.
    constexpr std::size_t most = 512;
    return std::clamp(openFileLimit() / 4, least, most);
}

OpenFolders::Claim::Claim(OpenFolders& folders, WalkFolder& folder) noexcept
    : folders_(folders), folder_(folder)
{
}

OpenFolders::Claim::~Claim()
{
    const std::lock_guard lock(shelf_.mutex);
    if (--folder_.access.unopened == 0)
        drop(folder_);
}

OpenFolder OpenFolders::Claim::open(const char* name)
{
    OpenFolder child;
    const auto attempt = [&] {
        auto handle = folders_.handleOf(folder_);
        if (!handle)
            handle = folders_.reopen(folder_);
        reason_ = ENOENT;
        if (!handle)
            return;
        child = handle->child(name);
        reason_ = child.isValid() ? 0 : errno;
        if (!DescriptorShortage::isReasonOf(reason_))
            handle_ = std::move(handle);
    };
    DescriptorShortage::outlast(attempt, folders_.isAbandoned_);
    return child;
}

void OpenFolders::Claim::returnTo(WalkFolder& next)
{
    if (!handle_)
        return;
    if (&next != &folder_)
        folders_.returnTo(next, folder_, *handle_);
    else if (!folders_.handleOf(next))
        folders_.holdAgain(next, handle_);
}

void OpenFolders::keep(WalkFolder& folder, OpenFolder handle, std::size_t waiting)
{
    auto shared = folder.parent ? std::make_shared<const OpenFolder>(std::move(handle)) : nullptr;
    const std::lock_guard lock(shelf_.mutex);
    if (shared)
        hold(folder, std::move(shared));
    folder.access.unopened = waiting;
}

void OpenFolders::forget(WalkFolder& folder) noexcept
{
    const std::lock_guard lock(shelf_.mutex);
    if (folder.access.unopened > 0) {
        folder.access.unopened = 0;
        drop(folder);
    }
}

void OpenFolders::returnTo(WalkFolder& next, const WalkFolder& leaf, const OpenFolder& handle)
{
    if (handleOf(next) || !handle.isValid())
        return;
    OpenFolder reached = handle.parent();
    for (const WalkFolder* above = leaf.parent; above != &next && reached.isValid();
         above = above->parent)
        reached = reached.parent();
    holdAgain(next, std::make_shared<const OpenFolder>(std::move(reached)));
}

std::shared_ptr<const OpenFolder> OpenFolders::handleOf(WalkFolder& folder) const
{
    if (!folder.parent)
        return root_;
    const std::lock_guard lock(shelf_.mutex);
    return folder.access.handle;
}

std::shared_ptr<const OpenFolder> OpenFolders::reopen(WalkFolder& folder) const
{
    std::vector<const WalkFolder*> path; // from the folder upwards
    std::shared_ptr<const OpenFolder> handle = root_;
    {
        const std::lock_guard lock(shelf_.mutex);
        for (const WalkFolder* above = &folder; above->parent; above = above->parent) {
            if (above->access.handle) {
                handle = above->access.handle;
                break;
            }
            path.push_back(above);
        }
    }
    for (auto next = path.rbegin(); next != path.rend(); ++next) {
        handle = std::make_shared<const OpenFolder>(handle->child((*next)->name()));
        if (!handle->isValid())
            return nullptr;
    }
    return holdAgain(folder, handle) ? handle : nullptr;
}

/// False when that is not the folder that was given up.
bool OpenFolders::holdAgain(WalkFolder& folder, std::shared_ptr<const OpenFolder> handle) const
{
    const auto identity = handle->identity();
    const std::lock_guard lock(shelf_.mutex);
    if (!identity || identity != folder.access.identity)
        return false;
    // Another worker may have been quicker.
    if (folder.access.unopened > 0 && !folder.access.handle) {
        hold(folder, std::move(handle));
        --shelf_.closed;
    }
    return true;
}

void OpenFolders::hold(WalkFolder& folder, std::shared_ptr<const OpenFolder> handle) const
{
    folder.access.place = shelf_.held.insert(shelf_.held.end(), &folder);
    folder.access.handle = std::move(handle);
    if (shelf_.held.size() > budget_)
        (void)giveUpLongestHeld();
}

void OpenFolders::drop(WalkFolder& folder) noexcept
{
    if (!folder.parent)
        return;
    if (folder.access.handle) {
        shelf_.held.erase(folder.access.place);
        folder.access.handle.reset();
    } else {
        --shelf_.closed;
    }
}

/// False when it could not be recognised again, and so stays.
bool OpenFolders::giveUpLongestHeld() noexcept
{
    WalkFolder::Access& longest = shelf_.held.front()->access;
    if (!longest.identity)
        longest.identity = longest.handle->identity();
    if (!longest.identity) {
        shelf_.held.splice(shelf_.held.end(), shelf_.held, shelf_.held.begin());
        return false;
    }
    // Workers that use the handle right now keep it open for that long.
    longest.handle.reset();
    shelf_.held.pop_front();
    ++shelf_.closed;
    return true;
}

bool OpenFolders::giveUpHalf() noexcept
{
    const std::lock_guard lock(shelf_.mutex);
    bool isRelief = false;
    for (std::size_t count = (shelf_.held.size() + 1) / 2; count > 0; --count)
        isRelief |= giveUpLongestHeld();
    return isRelief;
}

} // namespace brisalon::detail
