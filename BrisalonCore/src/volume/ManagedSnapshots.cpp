#include "volume/ManagedSnapshots.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace brisalon::detail {

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

/// The plain token of a local time written as YYYY-MM-DD HH:MM:SS.
std::string tokenOf(std::string time)
{
    std::ranges::replace(time, ' ', '-');
    std::erase(time, ':');
    return time;
}

struct Token {
    std::string text; ///< empty for none
    std::uint64_t number;
};

/// The snapshots' tokens, in order.
std::vector<Token> uniqueTokens(const std::vector<host::SnapshotManager::Snapshot>& snapshots)
{
    std::vector<Token> tokens;
    std::map<std::string, int> uses;
    for (const auto& snapshot : snapshots) {
        tokens.push_back({tokenOf(snapshot.created), snapshot.number});
        ++uses[tokens.back().text];
    }
    std::set<std::string> taken;
    for (const auto& [text, count] : uses)
        if (count == 1)
            taken.insert(text);
    for (Token& token : tokens) {
        if (uses[token.text] == 1)
            continue;
        token.text = spareToken(token.text, token.number, taken);
        taken.insert(token.text);
    }
    return tokens;
}

} // namespace

ManagedSnapshots::ManagedSnapshots(std::shared_ptr<const host::SnapshotManager> manager)
    : manager_(std::move(manager))
{
}

bool ManagedSnapshots::isAvailable(Deadline deadline) const
{
    return manager_->isAvailable(deadline);
}

SnapshotListResult ManagedSnapshots::list(Deadline deadline) const
{
    auto found = manager_->list(deadline);
    std::vector<Token> tokens = uniqueTokens(found.snapshots);
    SnapshotListResult result;
    for (std::size_t i = 0; i < tokens.size(); ++i)
        if (!tokens[i].text.empty())
            result.snapshots.push_back(
                {std::move(tokens[i].text), std::move(found.snapshots[i].line)});
    result.rawOutput = std::move(found.rawOutput);
    if (!found.complaint.empty())
        result.errorText = std::move(found.complaint);
    result.hasAnswered = found.hasAnswered;
    return result;
}

std::optional<std::string> ManagedSnapshots::remove(std::string_view dateToken,
                                                    Deadline deadline) const
{
    const auto found = manager_->list(deadline);
    const std::vector<Token> tokens = uniqueTokens(found.snapshots);
    const auto token = std::ranges::find(tokens, dateToken, &Token::text);
    if (token != tokens.end() && !dateToken.empty())
        return deletionFailure(manager_->erase(token->number, deadline), dateToken);
    return found.complaint.empty() ? couldNotDelete(dateToken) : found.complaint;
}

std::optional<std::string> deletionFailure(const host::ProcessResult& result,
                                           std::string_view dateToken)
{
    if (result.exitCode == 0)
        return std::nullopt;
    for (const std::string& text :
         {result.standardError, result.standardOutput, result.error.value_or("")})
        if (!text.empty())
            return text;
    return couldNotDelete(dateToken);
}

} // namespace brisalon::detail
