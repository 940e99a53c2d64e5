#pragma once

#include "BrisalonCore/SnapshotListResult.h"
#include "host/Process.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon::host {

/// A manager of snapshots that may be found on a machine without the system tool,
/// such as a program for them or the file system itself.
///
/// A manager knows its snapshots by numbers; outside they are known by date tokens.
/// Both operations ask the manager anew, and a token names the same snapshot as in
/// the listing that showed it, or none: snapshots of one second, which share a
/// plain token, get others (the seconds, 60 to 99, follow from the number), so that
/// none of them is taken for one that is gone. Those that no seconds are left for
/// are not listed.
///
/// Immutable; any thread.
class SnapshotProvider {
public:
    SnapshotProvider() = default;
    SnapshotProvider(const SnapshotProvider&) = delete;
    SnapshotProvider& operator=(const SnapshotProvider&) = delete;
    virtual ~SnapshotProvider() = default;

    /// Whether this manager is installed and looks after the startup volume.
    virtual bool isAvailable() const = 0;

    SnapshotListResult list() const;

    /// As SnapshotService::deleteLocalSnapshot.
    std::optional<std::string> remove(std::string_view dateToken) const;

protected:
    struct Snapshot {
        std::uint64_t number = 0;
        /// The local time of its creation as YYYY-MM-DD-HHMMSS.
        std::string dateToken;
        std::string line;
    };
    /// A local time written as YYYY-MM-DD HH:MM:SS, as a token.
    static std::string dateToken(std::string_view localTime);

    struct Snapshots {
        std::vector<Snapshot> snapshots;
        std::string rawOutput;
        std::string complaint; ///< empty when all went well
    };

private:
    virtual Snapshots read() const = 0;
    virtual ProcessResult erase(std::uint64_t number) const = 0;
    Snapshots readWithUniqueTokens() const;
};

/// What a deletion reports to the user: nothing after exit status 0, otherwise what
/// the tool said, or that the snapshot could not be deleted.
std::optional<std::string> deletionFailure(const ProcessResult& result, std::string_view dateToken);

/// This machine's managers, the preferred one first.
std::vector<std::shared_ptr<const SnapshotProvider>>
snapshotProviders(std::chrono::milliseconds timeLimit);

} // namespace brisalon::host
