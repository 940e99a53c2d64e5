#include "Brisalon/Platform/linux/DesktopTrash.h"

#include "Brisalon/Platform/HomeFolder.h"
#include "Brisalon/Platform/linux/MadeFolders.h"
#include "Brisalon/Platform/linux/ReachedFolder.h"
#include "Brisalon/Platform/linux/TrashFolder.h"

#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"

#include <cerrno>
#include <cstdlib>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

namespace {

using Reason = TrashFailure::Reason;

/// One move of some items, with what it learns of volumes on the way.
class TrashMove {
public:
    using Result = DesktopTrash::Result;

    explicit TrashMove(const FileURL& home) : homePath_(home.path()) {}

    std::vector<Result> run(std::span<const TrashItem> items, const std::stop_token& stop);

private:
    using Opened = std::variant<TrashFailure, TrashFolder>;

    /// A place in the Trash for one item.
    struct Reservation {
        std::size_t item;
        TrashFolder* trash;
        std::string restorePath; ///< absolute, or from the top of the trash's volume
        std::string name;
    };

    std::variant<Reservation, TrashFailure> reserve(const TrashItem& item,
                                                    const ReachedFolder& place);
    std::variant<Reservation, TrashFailure> reserve(const TrashItem& item);
    Result take(const TrashItem& item, Reservation& reservation);

    const std::variant<TrashFailure, MountIdentity>& homeMount();
    Opened& home();
    Opened& volume(const ReachedFolder& place);
    Opened openOwn(const Descriptor& base, const std::string& name, const FileURL& path);

    std::string homePath_;
    MadeFolders made_; ///< goes after those who work in them
    std::optional<std::variant<TrashFailure, MountIdentity>> homeMount_;
    std::optional<Opened> home_;
    std::map<MountIdentity, Opened> volumes_;
    // Most moves are of many items of few folders, one folder after the other.
    std::string lastFolderPath_;
    std::optional<ReachedFolder> lastFolder_;
    std::optional<MountTable> mounts_; ///< once places are reserved
};

/// The name of a folder on the way from "/", for opening it in the one above.
std::string lastName(std::string_view way)
{
    return std::string(way == "/" ? way : way.substr(way.rfind('/') + 1));
}

TrashFolder::Source sourceOf(const TrashItem& item, const ReachedFolder& place,
                             const std::string& restorePath)
{
    return {.folder = place.folder,
            .name = std::string(item.location.lastPathComponent()),
            .path = restorePath,
            .wanted = *item.identity};
}

std::vector<DesktopTrash::Result> TrashMove::run(std::span<const TrashItem> items,
                                                 const std::stop_token& stop)
{
    std::vector<Result> results(items.size(), TrashFailure{Reason::refused, ECANCELED});
    std::vector<Reservation> reservations;
    reservations.reserve(items.size());
    for (std::size_t i = 0; i < items.size() && !stop.stop_requested(); ++i) {
        try {
            auto reserved = reserve(items[i]);
            if (const TrashFailure* const failure = std::get_if<TrashFailure>(&reserved)) {
                results[i] = *failure;
                continue;
            }
            reservations.push_back(std::move(std::get<Reservation>(reserved)));
            reservations.back().item = i;
        } catch (const std::bad_alloc&) {
            results[i] = TrashFailure{Reason::refused, ENOMEM};
        }
    }
    for (Reservation& reservation : reservations) {
        if (stop.stop_requested())
            reservation.trash->release(reservation.name);
        else
            results[reservation.item] = take(items[reservation.item], reservation);
    }
    for (const Reservation& reservation : reservations)
        reservation.trash->finish();
    return results;
}

std::variant<TrashMove::Reservation, TrashFailure> TrashMove::reserve(const TrashItem& item)
{
    std::string folderPath = item.location.deletingLastPathComponent().path();
    if (!lastFolder_ || folderPath != lastFolderPath_)
        lastFolder_ = ReachedFolder::at(folderPath);
    if (!lastFolder_)
        return TrashFailure::unreached(errno);
    lastFolderPath_ = std::move(folderPath);
    if (!item.identity)
        return TrashFailure{Reason::changed};
    return reserve(item, *lastFolder_);
}

std::variant<TrashMove::Reservation, TrashFailure> TrashMove::reserve(const TrashItem& item,
                                                                      const ReachedFolder& place)
{
    // What lies on the home's own volume goes home or stays: in any other trash its
    // user would not look for it.
    const auto& homeVolume = homeMount();
    if (const TrashFailure* const failure = std::get_if<TrashFailure>(&homeVolume))
        return *failure;
    const bool isHome = std::get<MountIdentity>(homeVolume) == place.mount;
    Opened& opened = isHome ? home() : volume(place);
    TrashFolder* const trash = std::get_if<TrashFolder>(&opened);
    if (!trash)
        return std::get<TrashFailure>(opened);
    const std::string path = item.location.path();
    Reservation result{.item = 0,
                       .trash = trash,
                       .restorePath =
                           isHome ? path : std::string(paths::relative(path, place.topPath)),
                       .name = {}};
    auto name = trash->reserve(sourceOf(item, place, result.restorePath));
    if (const TrashFailure* const failure = std::get_if<TrashFailure>(&name))
        return *failure;
    result.name = std::move(std::get<std::string>(name));
    return result;
}

/// The folder is reached once more: the items before may have taken it along.
TrashMove::Result TrashMove::take(const TrashItem& item, Reservation& reservation)
{
    std::optional<ReachedFolder> place;
    std::optional<TrashFolder::Source> source;
    TrashFailure obstacle{Reason::refused, ENOMEM};
    try {
        place = ReachedFolder::at(item.location.deletingLastPathComponent().path());
        if (!place)
            obstacle = TrashFailure::unreached(errno);
        else if (!mounts_)
            mounts_ = MountTable::current();
        // Whoever empties the Trash would empty that volume.
        if (place && mounts_->carriesMount(item.location.path()))
            obstacle = TrashFailure{Reason::holdsVolume, EBUSY};
        else if (place)
            source.emplace(sourceOf(item, *place, reservation.restorePath));
    } catch (const std::bad_alloc&) {
        // Then there is no source.
    }
    if (!source) {
        reservation.trash->release(reservation.name);
        return obstacle;
    }
    try {
        return reservation.trash->take(*source, std::move(reservation.name));
    } catch (const std::bad_alloc&) {
        return obstacle;
    }
}

/// Of the volume that the home trash lies on, or would if it could be made; or why that
/// cannot be told.
const std::variant<TrashFailure, MountIdentity>& TrashMove::homeMount()
{
    if (homeMount_)
        return *homeMount_;
    // Links on the way are the user's own business.
    Descriptor folder;
    for (const std::string_view way : paths::way(homePath_)) {
        Descriptor next =
            Descriptor::open(folder.get(), lastName(way).c_str(), O_PATH | O_DIRECTORY);
        if (!next.isValid() && errno != ENOENT && errno != ENOTDIR)
            return homeMount_.emplace(TrashFailure{Reason::noTrash, errno});
        if (!next.isValid())
            break;
        folder = std::move(next);
    }
    if (const auto status = ItemStatus::read(folder, ""))
        return homeMount_.emplace(status->mount);
    return homeMount_.emplace(TrashFailure{Reason::noTrash, errno});
}

TrashMove::Opened& TrashMove::home()
{
    if (home_)
        return *home_;
    Descriptor folder;
    for (const std::string_view way : paths::way(homePath_)) {
        folder = made_.openOrMake(folder, lastName(way), O_PATH);
        if (!folder.isValid())
            return home_.emplace(TrashFailure{Reason::noTrash, errno});
    }
    return home_.emplace(TrashFolder::open(std::move(folder), FileURL(homePath_), made_));
}

TrashMove::Opened& TrashMove::volume(const ReachedFolder& place)
{
    const auto found = volumes_.find(place.mount);
    if (found != volumes_.end())
        return found->second;
    const std::string user = std::to_string(::getuid());
    const FileURL top(place.topPath);
    // The folder that the administrator made for everyone. A link, or one in which
    // people could take away each other's items, is none.
    const Descriptor shared = openFolder(place.top.get(), ".Trash");
    const auto status = ItemStatus::read(shared, "");
    Opened result;
    if (status && (status->mode & S_ISVTX) != 0)
        result = openOwn(shared, user,
                         top.appendingPathComponent(".Trash").appendingPathComponent(user));
    const std::string own = ".Trash-" + user;
    if (!std::holds_alternative<TrashFolder>(result))
        result = openOwn(place.top, own, top.appendingPathComponent(own));
    return volumes_.emplace(place.mount, std::move(result)).first->second;
}

/// The trash folder of that name. Nobody else's will do: whoever owns it could take
/// what is put there.
TrashMove::Opened TrashMove::openOwn(const Descriptor& base, const std::string& name,
                                     const FileURL& path)
{
    Descriptor folder = made_.openOrMake(base, name, O_PATH | O_NOFOLLOW);
    const auto status = folder.isValid() ? ItemStatus::read(folder, "") : std::nullopt;
    if (!status)
        return TrashFailure{Reason::noTrash, errno};
    if (status->owner != ::getuid())
        return TrashFailure{Reason::noTrash, EPERM};
    return TrashFolder::open(std::move(folder), path, made_);
}

} // namespace

FileURL DesktopTrash::homeTrash()
{
    const char* const data = std::getenv("XDG_DATA_HOME");
    const FileURL folder = data && *data == '/'
                               ? FileURL(data)
                               : brisalon::homeFolder().appendingPathComponent(".local/share");
    return folder.appendingPathComponent("Trash");
}

std::vector<DesktopTrash::Result> DesktopTrash::put(std::span<const TrashItem> items,
                                                    const std::stop_token& stop) const
{
    return TrashMove(home_).run(items, stop);
}

} // namespace brisalon
