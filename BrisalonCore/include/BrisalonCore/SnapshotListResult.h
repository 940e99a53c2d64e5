#pragma once

#include "BrisalonCore/LocalSnapshot.h"

#include <optional>
#include <string>
#include <vector>

namespace brisalon {

/// What a listing of the local snapshots gave.
struct SnapshotListResult {
    /// In the order of the output.
    std::vector<LocalSnapshot> snapshots;
    /// All that the tool printed; empty when that was not valid UTF-8.
    std::string rawOutput;
    /// What the tool complained of, or why it could not be started. There may be
    /// snapshots all the same.
    std::optional<std::string> errorText;
    /// False when time ran out before all was said; errorText says so. To ask again
    /// would take as long.
    bool hasAnswered = true;

    friend bool operator==(const SnapshotListResult&, const SnapshotListResult&) = default;
};

} // namespace brisalon
