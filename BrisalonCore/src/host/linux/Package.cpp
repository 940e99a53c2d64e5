#include "host/Package.h"

#include <algorithm>
#include <array>

namespace brisalon::host {

namespace {

/// Extensions of the folders that the Mac presents as one item, so that a disk
/// from there reads here as it does at home. Lower case, sorted.
constexpr auto bundleExtensions = std::to_array<std::string_view>({
    "abbu",
    "action",
    "aplibrary",
    "app",
    "appex",
    "backupbundle",
    "band",
    "bundle",
    "colorpicker",
    "component",
    "dext",
    "docset",
    "download",
    "dsym",
    "fcpbundle",
    "fcpproject",
    "imovielibrary",
    "imovieproject",
    "kext",
    "key",
    "logicx",
    "mdimporter",
    "migratedphotolibrary",
    "mpkg",
    "musiclibrary",
    "numbers",
    "pages",
    "photolibrary",
    "photoslibrary",
    "pkg",
    "playground",
    "plugin",
    "prefpane",
    "pvm",
    "qlgenerator",
    "rcproject",
    "rtfd",
    "saver",
    "scptd",
    "sparsebundle",
    "systemextension",
    "theater",
    "tvlibrary",
    "utm",
    "vmwarevm",
    "vst",
    "vst3",
    "wdgt",
    "workflow",
    "xcappdata",
    "xcarchive",
    "xcdatamodeld",
    "xcodeproj",
    "xcresult",
    "xctest",
    "xcworkspace",
    "xpc",
});
static_assert(std::ranges::is_sorted(bundleExtensions));

constexpr auto longestExtension =
    std::ranges::max(bundleExtensions, {}, &std::string_view::size).size();

constexpr char lowered(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool isPackageName(std::string_view folderName) noexcept
{
    const auto dot = folderName.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    const std::string_view extension = folderName.substr(dot + 1);
    if (extension.size() > longestExtension)
        return false;
    std::array<char, longestExtension> text;
    std::ranges::transform(extension, text.begin(), lowered);
    return std::ranges::binary_search(bundleExtensions,
                                      std::string_view(text.data(), extension.size()));
}

} // namespace brisalon::host
