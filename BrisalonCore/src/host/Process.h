#pragma once

#include "BrisalonCore/Deadline.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brisalon::host {

/// What running a tool came to.
struct ProcessResult {
    /// What it printed to each stream; empty when that is not valid UTF-8. A
    /// character that the limit of bytes cuts apart is dropped.
    std::string standardOutput;
    std::string standardError;
    /// Its exit status, or the number of the signal that killed it; -1 when it could
    /// not be started, or when the application discards its children's statuses.
    std::int32_t exitCode = -1;
    /// Why it could not be started.
    std::optional<std::string> error;
    /// False when the deadline cut it short or left it no time to start.
    bool hasAnswered = true;
};

/// How long a killed tool is waited for.
inline constexpr std::chrono::milliseconds dyingTime{200};

/// Runs the executable at that path and waits until it has exited and both its
/// output streams have ended. The arguments reach it as they are: no shell reads
/// them. Standard input, environment and current folder stay the application's, no
/// other descriptor is passed on; signals have their usual effect on it.
///
/// The tool leads a process group of its own. At the deadline the group is killed; if
/// that cuts the tool itself short, the last line of standardError says so. Something
/// that the tool left behind with its output open is waited for as long, but then what
/// the tool did counts. A tool that is not gone `dyingTime` after that, because it hangs
/// in the kernel, is left to itself.
///
/// Of each stream the first 16 MiB are kept and the rest is dropped.
///
/// Any thread. Throws std::bad_alloc when memory runs out.
ProcessResult runProcess(const std::string& tool, const std::vector<std::string>& arguments,
                         Deadline deadline);

} // namespace brisalon::host
