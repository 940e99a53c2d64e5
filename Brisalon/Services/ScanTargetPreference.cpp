#include "Brisalon/Services/ScanTargetPreference.h"

#include "Brisalon/Platform/DefaultsStore.h"
#include "Brisalon/Platform/HomeFolder.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisalon {

namespace {

constexpr std::string_view kindKey = "lastScanTargetKind";
constexpr std::string_view rootPathKey = "lastScanRootPath";

constexpr std::string_view homeText = "home";
constexpr std::string_view thisMacText = "thisMac";
constexpr std::string_view customText = "custom";

} // namespace

ScanTargetPreference ScanTargetPreference::load(const DefaultsStore& store)
{
    const std::optional<std::string> kind = store.text(kindKey);
    if (kind == thisMacText)
        return {Kind::thisMac, {}};
    if (kind == customText) {
        // Only absolute paths are ever saved.
        const std::optional<std::string> path = store.text(rootPathKey);
        if (path && path->starts_with('/'))
            return {Kind::customFolder, FileURL(*path)};
    }
    return {};
}

void ScanTargetPreference::save(const FileURL& root, DefaultsStore& store)
{
    const std::string path = root.resolvingSymbolicLinks().path();
    if (path == homeFolder().resolvingSymbolicLinks().path()) {
        store.setText(kindKey, homeText);
    } else if (path == "/") {
        store.setText(kindKey, thisMacText);
    } else {
        store.setText(kindKey, customText);
        store.setText(rootPathKey, path);
    }
}

bool ScanTargetPreference::isSaved(const DefaultsStore& store)
{
    return store.text(kindKey).has_value();
}

} // namespace brisalon
