#include "BrisalonCore/Risk.h"

namespace brisalon {

namespace {

struct RiskRow {
    Risk risk;
    std::string_view rawValue;
    std::string_view title;
    std::string_view summary;
};

constexpr std::array riskRows{
    RiskRow{Risk::safe, "safe", "Safe",
            "Usually safe to remove. Apps will recreate this if needed."},
    RiskRow{Risk::review, "review", "Review",
            "Check before removing. You may need to rebuild or re-download."},
    RiskRow{Risk::caution, "caution", "Caution",
            "High regret if you still need it. Confirm you have another copy."},
    RiskRow{Risk::unknown, "unknown", "Unknown",
            "Not a known junk folder. Only remove it if you recognize it."},
};

constexpr bool risksFollowTheEnumeration()
{
    for (std::size_t i = 0; i < riskRows.size(); ++i)
        if (riskRows[i].risk != allRisks[i] || static_cast<std::size_t>(riskRows[i].risk) != i)
            return false;
    return riskRows.size() == allRisks.size();
}
static_assert(risksFollowTheEnumeration());

const RiskRow& riskRow(Risk risk) noexcept
{
    return riskRows[static_cast<std::size_t>(risk)];
}

} // namespace

std::string_view rawValue(Risk risk) noexcept
{
    return riskRow(risk).rawValue;
}

std::optional<Risk> riskFromRawValue(std::string_view rawValue) noexcept
{
    for (const RiskRow& row : riskRows)
        if (row.rawValue == rawValue)
            return row.risk;
    return std::nullopt;
}

std::string_view title(Risk risk) noexcept
{
    return riskRow(risk).title;
}

std::string_view summary(Risk risk) noexcept
{
    return riskRow(risk).summary;
}

} // namespace brisalon
