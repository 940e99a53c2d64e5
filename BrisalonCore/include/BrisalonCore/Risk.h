#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brisalon {

/// How safe it is to remove an item. Fixed by its HogKind alone.
enum class Risk : std::uint8_t { safe, review, caution, unknown };

/// Every risk, in declaration order.
inline constexpr std::array allRisks{Risk::safe, Risk::review, Risk::caution, Risk::unknown};

/// The stable text that names the case, such as "safe".
std::string_view rawValue(Risk risk) noexcept;
/// The case with that exact (case-sensitive) raw value, if there is one.
std::optional<Risk> riskFromRawValue(std::string_view rawValue) noexcept;

/// The label shown to people, such as "Safe".
std::string_view title(Risk risk) noexcept;
/// One sentence or two of advice.
std::string_view summary(Risk risk) noexcept;

} // namespace brisalon
