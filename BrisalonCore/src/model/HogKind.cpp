#include "BrisalonCore/HogKind.h"

namespace brisalon {

namespace {

struct Row {
    HogKind kind;
    std::string_view rawValue;
    std::string_view title;
    Risk risk;
};

constexpr std::array rows{
    Row{HogKind::caches, "caches", "Caches", Risk::safe},
    Row{HogKind::logs, "logs", "Logs", Risk::safe},
    Row{HogKind::trash, "trash", "Trash", Risk::safe},
    Row{HogKind::installer, "installer", "Installer", Risk::review},
    Row{HogKind::xcodeDerivedData, "xcodeDerivedData", "Xcode DerivedData", Risk::review},
    Row{HogKind::xcodeSimulators, "xcodeSimulators", "Xcode Simulators", Risk::review},
    Row{HogKind::docker, "docker", "Docker", Risk::caution},
    Row{HogKind::nodeModules, "nodeModules", "node_modules", Risk::review},
    Row{HogKind::homebrew, "homebrew", "Homebrew cache", Risk::safe},
    Row{HogKind::iosBackup, "iosBackup", "iOS backup", Risk::caution},
    Row{HogKind::timeMachineSnapshot, "timeMachineSnapshot", "Time Machine snapshot",
        Risk::caution},
    Row{HogKind::none, "none", "File", Risk::unknown},
};

constexpr bool rowsFollowTheEnumeration()
{
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].kind != allHogKinds[i] || static_cast<std::size_t>(rows[i].kind) != i)
            return false;
    return rows.size() == allHogKinds.size();
}
static_assert(rowsFollowTheEnumeration());

const Row& row(HogKind kind) noexcept
{
    return rows[static_cast<std::size_t>(kind)];
}

} // namespace

std::string_view rawValue(HogKind kind) noexcept
{
    return row(kind).rawValue;
}

std::optional<HogKind> hogKindFromRawValue(std::string_view rawValue) noexcept
{
    for (const Row& row : rows)
        if (row.rawValue == rawValue)
            return row.kind;
    return std::nullopt;
}

std::string_view title(HogKind kind) noexcept
{
    return row(kind).title;
}

Risk risk(HogKind kind) noexcept
{
    return row(kind).risk;
}

} // namespace brisalon
