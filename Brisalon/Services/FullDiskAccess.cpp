#include "Brisalon/Services/FullDiskAccess.h"

#include "Brisalon/Platform/BundleInformation.h"
#include "Brisalon/Platform/FileAccess.h"
#include "Brisalon/Platform/HomeFolder.h"
#include "Brisalon/Platform/Workspace.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace brisalon {

namespace {

/// Hidden from programs without the permission: the database of permissions itself,
/// which belongs to the whole system, then places in the user's home.
constexpr std::string_view hiddenPath = "/Library/Application Support/com.apple.TCC/TCC.db";
constexpr std::array<std::string_view, 3> hiddenInHome{
    "Library/Safari/CloudTabs.db",
    "Library/Safari/Bookmarks.plist",
    "Library/Mail",
};

/// The page of the permission, in newer and in older systems.
constexpr std::array<std::string_view, 2> settingsAddresses{
    "x-apple.systempreferences:"
    "com.apple.settings.PrivacySecurity.extension?Privacy_AllFiles",
    "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles",
};

} // namespace

bool FullDiskAccess::isGranted(const FileAccess& access)
{
    if (!access.hidesPrivatePlaces() || access.isReadable(FileURL(hiddenPath)))
        return true;
    const FileURL home = homeFolder();
    return std::ranges::any_of(hiddenInHome, [&](std::string_view path) {
        return access.isReadable(home.appendingPathComponent(path));
    });
}

void FullDiskAccess::openSettings(const FileAccess& access, Workspace& workspace)
{
    if (!access.hidesPrivatePlaces())
        return;
    for (const std::string_view address : settingsAddresses) {
        if (workspace.openAddress(address))
            return;
    }
}

void FullDiskAccess::revealAppInFinder(Workspace& workspace, const BundleInformation& bundle)
{
    workspace.reveal(bundle.url(), [](bool) {});
}

} // namespace brisalon
