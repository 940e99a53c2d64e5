#include "host/linux/SnapperSnapshots.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace brisalon::host {

namespace {

/// The time of creation in a listing, in local time.
constexpr std::string_view timeShape = "dddd-dd-dd dd:dd:dd";

bool isTime(std::string_view text)
{
    return std::ranges::equal(text, timeShape, [](char c, char wanted) {
        return wanted == 'd' ? c >= '0' && c <= '9' : c == wanted;
    });
}

std::vector<std::string_view> lines(std::string_view text)
{
    std::vector<std::string_view> result;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        result.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

} // namespace

SnapperSnapshots::SnapperSnapshots(std::string tool, std::string mountPoint)
    : tool_(std::move(tool)), mountPoint_(std::move(mountPoint))
{
}

bool SnapperSnapshots::isAvailable(Deadline deadline) const
{
    const Configuration found = configuration(deadline);
    return found.name || !found.hasAnswered;
}

/// The name of the configuration for the mount point.
SnapperSnapshots::Configuration SnapperSnapshots::configuration(Deadline deadline) const
{
    const ProcessResult result =
        runProcess(tool_, {"--csvout", "list-configs", "--columns", "subvolume,config"}, deadline);
    const std::string prefix = mountPoint_ + ',';
    for (const std::string_view line : lines(result.standardOutput))
        if (line.starts_with(prefix))
            return {std::string(line.substr(prefix.size())), result.hasAnswered};
    return {std::nullopt, result.hasAnswered};
}

SnapshotManager::Listing SnapperSnapshots::list(Deadline deadline) const
{
    // Only columns that never need quoting; how much space each takes would take long
    // to find out.
    ProcessResult result =
        runProcess(tool_,
                   {"-c", configuration(deadline).name.value_or(""), "--csvout", "--iso", "list",
                    "--disable-used-space", "--columns", "number,date"},
                   deadline);
    Listing found;
    // The headings are no such line, nor is number 0, the running system, which has
    // no date.
    for (const std::string_view line : lines(result.standardOutput)) {
        Snapshot snapshot;
        const auto [end, error] =
            std::from_chars(line.data(), line.data() + line.size(), snapshot.number);
        const auto comma = static_cast<std::size_t>(end - line.data());
        if (error != std::errc() || comma == line.size() || line[comma] != ',' ||
            !isTime(line.substr(comma + 1)))
            continue;
        snapshot.created = line.substr(comma + 1);
        snapshot.line = line;
        found.snapshots.push_back(std::move(snapshot));
    }
    found.rawOutput = std::move(result.standardOutput);
    found.hasAnswered = result.hasAnswered;
    found.complaint = result.error ? *result.error : std::move(result.standardError);
    return found;
}

ProcessResult SnapperSnapshots::erase(std::uint64_t number, Deadline deadline) const
{
    return runProcess(
        tool_, {"-c", configuration(deadline).name.value_or(""), "delete", std::to_string(number)},
        deadline);
}

} // namespace brisalon::host
