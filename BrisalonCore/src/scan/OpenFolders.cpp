#include "scan/OpenFolders.h"

#include "BrisalonCore/OpenFileLimit.h"

#include <algorithm>
#include <cerrno>
#include <limits>
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

OpenFolder OpenFolders::Claim::open(const char* name, Place& place)
{
    OpenFolder child;
    bool isReached = false;
    const auto attempt = [&] {
        auto handle = folders_.reach(folder_, place);
        isReached = handle != nullptr;
        reason_ = ENOENT;
        if (!handle)
            return;
        child = handle->child(name);
        reason_ = child.isValid() ? 0 : errno;
        if (child.isValid())
            place = {std::move(handle), folder_.depth};
        else if (DescriptorShortage::isReasonOf(reason_))
            place = {};
    };
    const bool hadPlace = place.handle != nullptr;
    DescriptorShortage::outlast(attempt, folders_.isAbandoned_);
    // From a folder that was moved meanwhile the way leads elsewhere.
    if (!isReached && hadPlace)
        DescriptorShortage::outlast(attempt, folders_.isAbandoned_);
    return child;
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

OpenFolders::Place OpenFolders::placeIn(const WalkFolder& folder) const
{
    auto handle = handleOf(folder);
    return handle ? Place{std::move(handle), folder.depth} : Place{};
}

std::shared_ptr<const OpenFolder> OpenFolders::handleOf(const WalkFolder& folder) const
{
    if (!folder.parent)
        return root_;
    const std::lock_guard lock(shelf_.mutex);
    return folder.access.handle;
}

/// The folder, opened again if need be: by names from the nearest open one above, or
/// through ".." from the place, whichever takes fewer steps. In the second case the place
/// is then in it, otherwise in the one above; it is lost when that fails.
std::shared_ptr<const OpenFolder> OpenFolders::reach(WalkFolder& folder, Place& place) const
{
    if (auto handle = handleOf(folder))
        return handle;
    const std::size_t stepsUp = place.handle && place.depth >= folder.depth
                                    ? place.depth - folder.depth
                                    : std::numeric_limits<std::size_t>::max();
    std::vector<const WalkFolder*> path; // from the folder upwards
    std::shared_ptr<const OpenFolder> handle = root_;
    {
        const std::lock_guard lock(shelf_.mutex);
        for (const WalkFolder* above = &folder; above->parent && path.size() < stepsUp;
             above = above->parent) {
            const auto& open = above->depth == place.depth ? place.handle : above->access.handle;
            if (open) {
                handle = open;
                break;
            }
            path.push_back(above);
        }
    }
    const bool climbs = path.size() == stepsUp;
    if (path.empty() && !climbs)
        return handle; // another worker was quicker
    if (climbs) {
        path.clear();
        handle = std::exchange(place, {}).handle;
        for (std::size_t step = 0; step < stepsUp && handle->isValid(); ++step)
            handle = std::make_shared<const OpenFolder>(handle->parent());
    }
    for (auto next = path.rbegin(); next != path.rend() && handle->isValid(); ++next) {
        place = {std::move(handle), (*next)->depth - 1};
        handle = std::make_shared<const OpenFolder>(place.handle->child((*next)->name()));
    }
    if (!handle->isValid() || !holdAgain(folder, handle)) {
        place = {};
        return nullptr;
    }
    if (climbs)
        place = {handle, folder.depth};
    return handle;
}

/// False when that is not the folder that was given up.
bool OpenFolders::holdAgain(WalkFolder& folder, std::shared_ptr<const OpenFolder> handle) const
{
    const auto identity = handle->identity();
    const std::lock_guard lock(shelf_.mutex);
    if (!identity || identity != folder.access.identity)
        return false;
    // Another worker may have been quicker, or nobody else may need it.
    if (folder.access.unopened > 1 && !folder.access.handle)
        hold(folder, std::move(handle));
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
    if (!folder.access.handle)
        return;
    shelf_.held.erase(folder.access.place);
    folder.access.handle.reset();
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
