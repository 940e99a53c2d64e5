#include "host/ProtectedPlaces.h"

#include "BrisalonCore/AccountHome.h"
#include "BrisalonCore/ItemStatus.h"
#include "BrisalonCore/Paths.h"
#include "host/Folder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace brisalon::host {

namespace {

namespace fs = std::filesystem;

enum class Extent : std::uint8_t {
    itself,    ///< the folder alone; what lies in it may go
    withBelow, ///< the folder and everything in it
};

struct Place {
    std::string_view path;
    Extent extent;
};

/// The top-level folders of the Filesystem Hierarchy Standard 3.0, and those that
/// widespread package systems add. /bin, /sbin, /opt and /usr are protected
/// everywhere and need no row.
constexpr auto places = std::to_array<Place>({
    {"/boot", Extent::withBelow},   {"/dev", Extent::itself},        {"/efi", Extent::withBelow},
    {"/etc", Extent::withBelow},    {"/home", Extent::itself},       {"/lib", Extent::withBelow},
    {"/lib32", Extent::withBelow},  {"/lib64", Extent::withBelow},   {"/libo32", Extent::withBelow},
    {"/libx32", Extent::withBelow}, {"/lost+found", Extent::itself}, {"/media", Extent::itself},
    {"/mnt", Extent::itself},       {"/nix", Extent::itself},        {"/proc", Extent::withBelow},
    {"/root", Extent::itself},      {"/run", Extent::itself},        {"/snap", Extent::itself},
    {"/srv", Extent::itself},       {"/sys", Extent::withBelow},     {"/tmp", Extent::itself},
    {"/var", Extent::itself},
});

/// A home that is not absolute would depend on where the program started.
void addHome(std::vector<std::string>& homes, std::string_view path)
{
    if (path.starts_with('/'))
        homes.push_back(resolveSymbolicLinks(path));
}

} // namespace

bool isProtectedPlace(std::string_view path, std::string_view home) noexcept
{
    return paths::isWithin(home, path) || std::ranges::any_of(places, [path](const Place& place) {
               return place.extent == Extent::itself ? path == place.path
                                                     : paths::isWithin(path, place.path);
           });
}

ProtectedPlaces::ProtectedPlaces() : mounts_(MountTable::current())
{
    addHome(homes_, accountHome());
    if (const char* const home = std::getenv("HOME"); home && home != accountHome())
        addHome(homes_, home);
    // By their texts alone: what they lead to may hang.
    std::error_code error;
    for (fs::directory_iterator entry("/", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code isNoLink;
        const fs::path target = fs::read_symlink(entry->path(), isNoLink);
        if (!isNoLink)
            links_.push_back(
                {entry->path(), (fs::path("/") / target / "").lexically_normal().parent_path()});
    }
}

std::vector<std::string> ProtectedPlaces::names(std::string_view path) const
{
    std::vector<std::string> names{std::string(path)};
    if (const auto item = mounts_.place(path)) {
        for (const Mount& mount : mounts_.mounts()) {
            const StoredPlace shown = mount.shown();
            if (item->isWithin(shown))
                names.push_back(
                    paths::joined(mount.point, paths::relative(item->path, shown.path)));
            else if (shown.isWithin(*item))
                names.push_back(mount.point);
        }
    }
    for (const Link& link : links_) {
        if (paths::isWithin(path, link.target))
            names.push_back(paths::joined(link.path, paths::relative(path, link.target)));
        else if (paths::isWithin(link.target, path))
            names.push_back(link.path);
    }
    return names;
}

bool ProtectedPlaces::isProtected(std::string_view name) const noexcept
{
    return isProtectedPlace(name, "") || std::ranges::any_of(homes_, [name](std::string_view home) {
               return paths::isWithin(home, name);
           });
}

bool ProtectedPlaces::isVolume(std::string_view path) const
{
    // The item is asked last: a mounted one may hang.
    const Mount* const mount = mounts_.at(path);
    if (mount && mount->point == path)
        return true;
    const auto item = mounts_.place(path);
    if (item && std::ranges::any_of(mounts_.mounts(), [&](const Mount& other) {
            return other.under == item || (other.showsVolume() && other.shown().isWithin(*item));
        }))
        return true;
    const auto status = ItemStatus::read(path);
    return status && status->isMountRoot;
}

} // namespace brisalon::host
