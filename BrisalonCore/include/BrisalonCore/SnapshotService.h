#pragma once

#include "BrisalonCore/SnapshotListResult.h"
#include "BrisalonCore/SnapshotProvider.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon {

/// Lists the local snapshots of the startup volume and deletes single ones, by
/// running the system's tool for them or, where that is absent, by asking what else
/// the machine manages snapshots with.
///
/// Every call blocks until the tool has ended, but for no longer than the time
/// limit: a tool that takes longer is killed with all that it started, and a text
/// says so. What answers in the tool's place may run a few commands, each with that
/// limit.
///
/// A value without state between calls; any thread, several at once.
class SnapshotService {
public:
    using Providers = std::vector<std::shared_ptr<const SnapshotProvider>>;

    static constexpr std::string_view systemTool = "/usr/bin/tmutil";
    static constexpr std::chrono::milliseconds usualTimeLimit = std::chrono::seconds(30);

    /// This machine's: the system's tool, else the first provider that is there.
    SnapshotService();

    /// Runs the executable at the path `tool`, and nothing of this machine's in its
    /// place: where no file has that path, the first available of `substitutes`
    /// answers; without one, the failure to start is the answer.
    explicit SnapshotService(std::string tool, std::chrono::milliseconds timeLimit = usualTimeLimit,
                             Providers substitutes = {});

    /// A tool that fails but prints snapshots still yields them.
    SnapshotListResult listLocalSnapshots() const;

    /// Nothing when the snapshot is deleted, otherwise the text to show: what the
    /// tool printed, unchanged.
    std::optional<std::string> deleteLocalSnapshot(std::string_view dateToken) const;

private:
    const SnapshotProvider* substitute() const;

    std::string tool_;
    std::chrono::milliseconds timeLimit_;
    Providers substitutes_;
};

} // namespace brisalon
