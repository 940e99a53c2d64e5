#include "BrisalonCore/SnapshotService.h"

#include "BrisalonCore/SnapshotParser.h"
#include "host/Process.h"
#include "host/SnapshotManager.h"
#include "volume/ManagedSnapshots.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace brisalon {

namespace {

SnapshotService::Providers machinesProviders()
{
    SnapshotService::Providers providers;
    for (auto& manager : host::snapshotManagers(SnapshotService::usualTimeLimit))
        providers.push_back(std::make_shared<detail::ManagedSnapshots>(std::move(manager)));
    return providers;
}

} // namespace

SnapshotService::SnapshotService()
    : SnapshotService(std::string(systemTool), usualTimeLimit, machinesProviders())
{
}

SnapshotService::SnapshotService(std::string tool, std::chrono::milliseconds timeLimit,
                                 Providers substitutes)
    : tool_(std::move(tool)), timeLimit_(timeLimit), substitutes_(std::move(substitutes))
{
}

SnapshotListResult SnapshotService::listLocalSnapshots() const
{
    if (const SnapshotProvider* provider = substitute())
        return provider->list();
    const host::ProcessResult result =
        host::runProcess(tool_, {"listlocalsnapshots", "/"}, timeLimit_);
    if (result.error && result.standardOutput.empty())
        return {{}, result.standardOutput, result.error};
    return {SnapshotParser::parse(result.standardOutput), result.standardOutput,
            result.standardError.empty() ? std::nullopt : std::optional(result.standardError)};
}

std::optional<std::string> SnapshotService::deleteLocalSnapshot(std::string_view dateToken) const
{
    if (const SnapshotProvider* provider = substitute())
        return provider->remove(dateToken);
    return detail::deletionFailure(
        host::runProcess(tool_, {"deletelocalsnapshots", std::string(dateToken)}, timeLimit_),
        dateToken);
}

/// What answers in the tool's place; null when the tool has to.
const SnapshotProvider* SnapshotService::substitute() const
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
