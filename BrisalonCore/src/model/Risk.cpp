#include "BrisalonCore/Risk.h"

namespace brisalon {

namespace {

struct Row {
    Risk risk;
    std::string_view rawValue;
    std::string_view title;
    std::string_view summary;
};

constexpr std::array rows{
    Row{Risk::safe, "safe", "Safe", "Usually safe to remove. Apps will recreate this if needed."},
    Row{Risk::review, "review", "Review",
        "Check before removing. You may need to rebuild or re-download."},
    Row{Risk::caution, "caution", "Caution",
        "High regret if you still need it. Confirm you have another copy."},
    Row{Risk::unknown, "unknown", "Unknown",
        "Not a known junk folder. Only remove it if you recognize it."},
};

constexpr bool rowsFollowTheEnumeration()
{
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].risk != allRisks[i] || static_cast<std::size_t>(rows[i].risk) != i)
            return false;
    return rows.size() == allRisks.size();
}
static_assert(rowsFollowTheEnumeration());

const Row& row(Risk risk) noexcept
{
    return rows[static_cast<std::size_t>(risk)];
}

} // namespace

std::string_view rawValue(Risk risk) noexcept
{
    return row(risk).rawValue;
}

std::optional<Risk> riskFromRawValue(std::string_view rawValue) noexcept
{
    for (const Row& row : rows)
        if (row.rawValue == rawValue)
            return row.risk;
    return std::nullopt;
}

std::string_view title(Risk risk) noexcept
{
    return row(risk).title;
}

std::string_view summary(Risk risk) noexcept
{
    return row(risk).summary;
}

} // namespace brisalon
