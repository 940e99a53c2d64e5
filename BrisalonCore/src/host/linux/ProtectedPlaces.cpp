#include "host/ProtectedPlaces.h"

#include "BrisalonCore/AccountHome.h"
#include "BrisalonCore/ItemStatus.h"
#include "BrisalonCore/Paths.h"
#include "host/Folder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace brisalon::host {

namespace {

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

bool isProtectedWithHome(std::string_view path, std::string_view home)
{
    return isProtectedPlace(path, home.starts_with('/') ? resolveSymbolicLinks(home) : "");
}

bool isMountRoot(std::string_view path)
{
    const auto status = ItemStatus::read(path);
    return status && status->isMountRoot;
}

} // namespace

bool isProtectedPlace(std::string_view path, std::string_view home) noexcept
{
    return paths::isWithin(home, path) || std::ranges::any_of(places, [path](const Place& place) {
               return place.extent == Extent::itself ? path == place.path
                                                     : paths::isWithin(path, place.path);
           });
}

bool isProtectedHere(std::string_view path)
{
    const std::string& account = accountHome();
    const char* const home = std::getenv("HOME");
    return isProtectedWithHome(path, account) ||
           (home && home != account && isProtectedWithHome(path, home)) || isMountRoot(path);
}

} // namespace brisalon::host
