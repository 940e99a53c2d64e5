#include "host/SnapshotProvider.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace brisalon::host {

namespace {

/// In a token without its seconds, that is up to the minutes.
constexpr std::size_t lengthToMinutes = std::string_view("YYYY-MM-DD-HHMM").size();

/// Seconds that no clock shows.
constexpr std::uint64_t firstSpareSecond = 60;
constexpr std::uint64_t spareSeconds = 40;

/// A token in the same minute that is not among `taken`; empty if there is none.
std::string spareToken(std::string_view token, std::uint64_t number,
                       const std::set<std::string>& taken)
{
    for (std::uint64_t step = 0; step < spareSeconds; ++step) {
        std::string result(token.substr(0, lengthToMinutes));
        result += std::to_string(firstSpareSecond + (number + step) % spareSeconds);
        if (!taken.contains(result))
            return result;
    }
    return {};
}

std::string couldNotDelete(std::string_view dateToken)
{
    return "Could not delete snapshot " + std::string(dateToken) + ".";
}

} // namespace

std::string SnapshotProvider::dateToken(std::string_view localTime)
{
    std::string token(localTime);
    std::ranges::replace(token, ' ', '-');
    std::erase(token, ':');
    return token;
}

SnapshotProvider::Snapshots SnapshotProvider::readWithUniqueTokens() const
{
    Snapshots result = read();
    std::map<std::string, int> uses;
    for (const Snapshot& snapshot : result.snapshots)
        ++uses[snapshot.dateToken];
    std::set<std::string> taken;
    for (const auto& [token, count] : uses)
        if (count == 1)
            taken.insert(token);
    for (Snapshot& snapshot : result.snapshots) {
        if (uses[snapshot.dateToken] == 1)
            continue;
        snapshot.dateToken = spareToken(snapshot.dateToken, snapshot.number, taken);
        taken.insert(snapshot.dateToken);
    }
    std::erase_if(result.snapshots,
                  [](const Snapshot& snapshot) { return snapshot.dateToken.empty(); });
    return result;
}

SnapshotListResult SnapshotProvider::list() const
{
    Snapshots found = readWithUniqueTokens();
    SnapshotListResult result;
    for (Snapshot& snapshot : found.snapshots)
        result.snapshots.push_back({std::move(snapshot.dateToken), std::move(snapshot.line)});
    result.rawOutput = std::move(found.rawOutput);
    if (!found.complaint.empty())
        result.errorText = std::move(found.complaint);
    return result;
}

std::optional<std::string> SnapshotProvider::remove(std::string_view dateToken) const
{
    const Snapshots found = readWithUniqueTokens();
    const auto snapshot = std::ranges::find(found.snapshots, dateToken, &Snapshot::dateToken);
    if (snapshot != found.snapshots.end())
        return deletionFailure(erase(snapshot->number), dateToken);
    return found.complaint.empty() ? couldNotDelete(dateToken) : found.complaint;
}

std::optional<std::string> deletionFailure(const ProcessResult& result, std::string_view dateToken)
{
    if (result.exitCode == 0)
        return std::nullopt;
    for (const std::string& text :
         {result.standardError, result.standardOutput, result.error.value_or("")})
        if (!text.empty())
            return text;
    return couldNotDelete(dateToken);
}

} // namespace brisalon::host
