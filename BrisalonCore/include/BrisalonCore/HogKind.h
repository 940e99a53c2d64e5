#pragma once

#include "BrisalonCore/Risk.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brisalon {

/// Which well-known space hog an item belongs to; `none` when it is not one.
enum class HogKind : std::uint8_t {
    caches,
    logs,
    trash,
    installer,
    xcodeDerivedData,
    xcodeSimulators,
    docker,
    nodeModules,
    homebrew,
    iosBackup,
    timeMachineSnapshot,
    none,
};

/// Every kind, in declaration order.
inline constexpr std::array allHogKinds{
    HogKind::caches,
    HogKind::logs,
    HogKind::trash,
    HogKind::installer,
    HogKind::xcodeDerivedData,
    HogKind::xcodeSimulators,
    HogKind::docker,
    HogKind::nodeModules,
    HogKind::homebrew,
    HogKind::iosBackup,
    HogKind::timeMachineSnapshot,
    HogKind::none,
};

/// The stable text that names the case, such as "nodeModules".
std::string_view rawValue(HogKind kind) noexcept;
/// The case with that exact (case-sensitive) raw value, if there is one.
std::optional<HogKind> hogKindFromRawValue(std::string_view rawValue) noexcept;

/// The label shown to people, such as "node_modules"; "File" for `none`.
std::string_view title(HogKind kind) noexcept;
/// The only source of an item's risk.
Risk risk(HogKind kind) noexcept;

} // namespace brisalon
