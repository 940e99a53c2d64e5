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
    for (auto& manager : host::snapshotManagers())
        providers.push_back(std::make_shared<detail::ManagedSnapshots>(std::move(manager)));
    return providers;
}

} // namespace

SnapshotService::SnapshotService() : SnapshotService(std::string(systemTool), machinesProviders())
{
}

SnapshotService::SnapshotService(std::string tool, Providers substitutes)
    : SnapshotService(std::move(tool), std::move(substitutes), TimeLimits())
{
}

SnapshotService::SnapshotService(std::string tool, Providers substitutes, TimeLimits timeLimits)
    : tool_(std::move(tool)), substitutes_(std::move(substitutes)), timeLimits_(timeLimits)
{
}

SnapshotListResult SnapshotService::listLocalSnapshots() const
{
    const Deadline deadline = std::chrono::steady_clock::now() + timeLimits_.listing;
    if (const SnapshotProvider* provider = substitute(deadline))
        return provider->list(deadline);
    const host::ProcessResult result =
        host::runProcess(tool_, {"listlocalsnapshots", "/"}, deadline);
    if (result.error && result.standardOutput.empty())
        return {{}, result.standardOutput, result.error};
    return {SnapshotParser::parse(result.standardOutput), result.standardOutput,
            result.standardError.empty() ? std::nullopt : std::optional(result.standardError),
            result.hasAnswered};
}

std::optional<std::string> SnapshotService::deleteLocalSnapshot(std::string_view dateToken) const
{
    const Deadline deadline = std::chrono::steady_clock::now() + timeLimits_.deletion;
    if (const SnapshotProvider* provider = substitute(deadline))
        return provider->remove(dateToken, deadline);
    return detail::deletionFailure(
        host::runProcess(tool_, {"deletelocalsnapshots", std::string(dateToken)}, deadline),
        dateToken);
}

/// What answers in the tool's place; null when the tool has to.
const SnapshotProvider* SnapshotService::substitute(Deadline deadline) const
{
    std::error_code error;
    const bool isAbsent =
        std::filesystem::status(tool_, error).type() == std::filesystem::file_type::not_found;
    if (!isAbsent)
        return nullptr;
    const auto found = std::ranges::find_if(
        substitutes_, [deadline](const auto& provider) { return provider->isAvailable(deadline); });
    return found == substitutes_.end() ? nullptr : found->get();
}

} // namespace brisalon
