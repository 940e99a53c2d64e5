#include "BrisalonCore/SnapshotService.h"

#include "BrisalonCore/SnapshotParser.h"
#include "host/Process.h"
#include "host/SnapshotProvider.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace brisalon {

SnapshotService::SnapshotService()
    : SnapshotService(std::string(systemTool), usualTimeLimit,
                      host::snapshotProviders(usualTimeLimit))
{
}

SnapshotService::SnapshotService(std::string tool, std::chrono::milliseconds timeLimit,
                                 Providers substitutes)
    : tool_(std::move(tool)), timeLimit_(timeLimit), substitutes_(std::move(substitutes))
{
}

SnapshotListResult SnapshotService::listLocalSnapshots() const
{
    if (const host::SnapshotProvider* provider = substitute())
        return provider->list();
    const host::ProcessResult result = run({"listlocalsnapshots", "/"});
    if (result.error && result.standardOutput.empty())
        return {{}, result.standardOutput, result.error};
    return {SnapshotParser::parse(result.standardOutput), result.standardOutput,
            result.standardError.empty() ? std::nullopt : std::optional(result.standardError)};
}

std::optional<std::string> SnapshotService::deleteLocalSnapshot(std::string_view dateToken) const
{
    if (const host::SnapshotProvider* provider = substitute())
        return provider->remove(dateToken);
    return host::deletionFailure(run({"deletelocalsnapshots", std::string(dateToken)}), dateToken);
}

host::ProcessResult SnapshotService::run(const std::vector<std::string>& arguments) const
{
    return host::runProcess(tool_, arguments, timeLimit_);
}

/// What answers in the tool's place; null when the tool has to.
const host::SnapshotProvider* SnapshotService::substitute() const
{
    std::error_code error;
    const bool isAbsent =
        std::filesystem::status(tool_, error).type() == std::filesystem::file_type::not_found;
    if (!isAbsent)
        return nullptr;
    const auto found = std::ranges::find_if(
        substitutes_, [](const auto& provider) { return provider->isAvailable(); });
    return found == substitutes_.end() ? nullptr : found->get();
}

} // namespace brisalon
