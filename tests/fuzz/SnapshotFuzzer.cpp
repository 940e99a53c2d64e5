// Any output of the listing tool; what is plain ASCII of it is searched by a regular
// expression as well.

#include "BrisalonCore/SnapshotParser.h"

#include "Require.h"

#include <algorithm>
#include <cstdint>
#include <regex>

using brisalon::LocalSnapshot;
using brisalon::SnapshotParser;
using brisalon::tests::require;

namespace {

std::vector<LocalSnapshot> parsedPlainly(const std::string& output)
{
    static const std::regex token(R"(\d{4}-\d{2}-\d{2}-\d{6})");
    std::vector<LocalSnapshot> result;
    const std::string breaks = "\n\r\v\f";
    for (std::size_t start = 0; start < output.size();) {
        const auto end = std::min(output.find_first_of(breaks, start), output.size());
        std::string line = output.substr(start, end - start);
        start = end + 1;
        const auto first = line.find_first_not_of(" \t");
        if (first == std::string::npos)
            continue;
        line = line.substr(first, line.find_last_not_of(" \t") - first + 1);
        std::smatch match;
        if (std::regex_search(line, match, token))
            result.push_back({match.str(), line});
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string output(reinterpret_cast<const char*>(data), size);
    const auto snapshots = SnapshotParser::parse(output);
    for (const LocalSnapshot& snapshot : snapshots) {
        require(snapshot.rawLine.find(snapshot.dateToken) != std::string::npos);
        require(output.find(snapshot.rawLine) != std::string::npos);
    }
    // Other control characters are no white space to the one and some to the other.
    const bool isPlain = std::ranges::all_of(
        output, [](char c) { return (c >= ' ' && c <= '~') || (c >= '\t' && c <= '\r'); });
    require(!isPlain || snapshots == parsedPlainly(output));
    return 0;
}
