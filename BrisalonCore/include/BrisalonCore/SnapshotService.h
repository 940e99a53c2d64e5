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
/// Every call blocks until the tool has ended, but for no longer than its time limit
/// and the moment that a killed tool takes to be gone, whatever number of commands it
/// runs: a tool that takes longer is killed with all that it started, and a text says
/// that it did not answer.
///
/// A value without state between calls; any thread, several at once.
class SnapshotService {
public:
    using Providers = std::vector<std::shared_ptr<const SnapshotProvider>>;

    static constexpr std::string_view systemTool = "/usr/bin/tmutil";

    struct TimeLimits {
        /// Together with the moment above, three seconds: the window waits for it.
        std::chrono::milliseconds listing{2800};
        /// Long, since a deletion that is cut short may be half done.
        std::chrono::milliseconds deletion = std::chrono::seconds(30);
    };

    /// This machine's: the system's tool, else the first provider that is there.
    SnapshotService();

    /// Runs the executable at the path `tool`, and nothing of this machine's in its
    /// place: where no file has that path, the first available of `substitutes`
    /// answers; without one, the failure to start is the answer.
    explicit SnapshotService(std::string tool, Providers substitutes = {});
    SnapshotService(std::string tool, Providers substitutes, TimeLimits timeLimits);

    /// A tool that fails but prints snapshots still yields them.
    SnapshotListResult listLocalSnapshots() const;

    /// Nothing when the snapshot is deleted, otherwise the text to show: what the
    /// tool printed, unchanged.
    std::optional<std::string> deleteLocalSnapshot(std::string_view dateToken) const;

private:
    const SnapshotProvider* substitute(Deadline deadline) const;

    std::string tool_;
    Providers substitutes_;
    TimeLimits timeLimits_;
};

} // namespace brisalon
