#include "Brisalon/Platform/linux/DesktopTrash.h"

#include "Brisalon/Platform/HomeFolder.h"

#include "BrisalonCore/Paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

namespace {

/// Opens the folder at an absolute path, following links, and makes what is missing
/// of it for the user alone.
Descriptor openOrMakePath(const std::string& path)
{
    for (const std::string_view folder : paths::way(path))
        ::mkdir(std::string(folder).c_str(), 0700);
    return Descriptor::open(AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY);
}

/// The folder of that name that belongs to the user, made if it is missing. Nobody
/// else's will do: whoever owns it could take what is put there.
Descriptor openOwn(int base, const std::string& name)
{
    Descriptor folder = openOrMakeFolder(base, name.c_str());
    const auto status = ItemStatus::read(folder, "");
    return status && status->owner == ::getuid() ? std::move(folder) : Descriptor();
}

/// The user's part of the trash folder that the administrator made for everyone. A
/// link, or a folder in which people could take away each other's items, is none.
std::optional<TrashFolder> sharedTrash(const ReachedFolder& place, const std::string& user)
{
    const Descriptor shared = openFolder(place.top.get(), ".Trash");
    const auto status = ItemStatus::read(shared, "");
    if (!status || (status->mode & S_ISVTX) == 0)
        return std::nullopt;
    return TrashFolder::open(
        openOwn(shared.get(), user),
        FileURL(place.topPath).appendingPathComponent(".Trash").appendingPathComponent(user));
}

std::optional<TrashFolder> ownTrash(const ReachedFolder& place, const std::string& user)
{
    const std::string name = ".Trash-" + user;
    return TrashFolder::open(openOwn(place.top.get(), name),
                             FileURL(place.topPath).appendingPathComponent(name));
}

/// Whether another trash folder may still do.
bool isUnusable(const std::variant<FileURL, TrashFailure>& result)
{
    const TrashFailure* const failure = std::get_if<TrashFailure>(&result);
    return failure && failure->reason == TrashFailure::Reason::noTrash;
}

} // namespace

DesktopTrash::DesktopTrash(FileURL home) : home_(std::move(home)), mounts_(MountTable::current()) {}

FileURL DesktopTrash::homeTrash()
{
    const char* const data = std::getenv("XDG_DATA_HOME");
    const FileURL folder = data && *data == '/'
                               ? FileURL(data)
                               : brisalon::homeFolder().appendingPathComponent(".local/share");
    return folder.appendingPathComponent("Trash");
}

std::variant<FileURL, TrashFailure> DesktopTrash::put(const TrashItem& item)
{
    using Reason = TrashFailure::Reason;
    const auto place = ReachedFolder::at(item.location.deletingLastPathComponent().path());
    if (!item.identity || !place)
        return TrashFailure{Reason::changed};
    const std::string path = item.location.path();
    // Whoever empties the Trash would empty that volume.
    if (holdsMount(path))
        return TrashFailure{Reason::refused, EBUSY};

    TrashFolder::Source source{.folder = place->folder,
                               .name = std::string(item.location.lastPathComponent()),
                               .path = path,
                               .wanted = *item.identity};
    std::variant<FileURL, TrashFailure> result = TrashFailure{Reason::noTrash};
    if (const TrashFolder* const home = homeFolder(); home && home->mount() == place->mount)
        result = home->take(source);
    if (const TrashFolder* const volume = isUnusable(result) ? volumeFolder(*place) : nullptr) {
        source.path = paths::relative(path, place->topPath);
        result = volume->take(source);
    }
    return result;
}

const TrashFolder* DesktopTrash::homeFolder()
{
    if (!homeFolder_)
        homeFolder_ = TrashFolder::open(openOrMakePath(home_.path()), home_);
    return *homeFolder_ ? &**homeFolder_ : nullptr;
}

const TrashFolder* DesktopTrash::volumeFolder(const ReachedFolder& place)
{
    const auto [found, isNew] = volumeFolders_.try_emplace(place.mount);
    if (isNew) {
        const std::string user = std::to_string(::getuid());
        found->second = sharedTrash(place, user);
        if (!found->second)
            found->second = ownTrash(place, user);
    }
    return found->second ? &*found->second : nullptr;
}

bool DesktopTrash::holdsMount(std::string_view path) const
{
    return std::ranges::any_of(mounts_.mounts(), [path](const Mount& mount) {
        return paths::isWithin(mount.point, path);
    });
}

} // namespace brisalon
