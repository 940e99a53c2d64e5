#pragma once

#include "BrisalonCore/LocalSnapshot.h"

#include <string_view>
#include <vector>

namespace brisalon {

/// Finds the snapshots in what the listing tool printed.
class SnapshotParser {
public:
    SnapshotParser() = delete;

    /// One snapshot for each line with a date token, in order and with duplicates;
    /// other lines are passed over. The text is UTF-8; bytes that are not stand for
    /// themselves and match nothing. Any thread.
    ///
    /// Lines end at every Unicode line break, white space around them is dropped,
    /// and the token is the first match of \d{4}-\d{2}-\d{2}-\d{6} anywhere in the
    /// line, also within longer runs of digits. As in Unicode regular expressions
    /// (UTS #18), \d is every decimal digit (general category Nd): a tool that
    /// writes dates in the user's own digits is understood and gets them back.
    static std::vector<LocalSnapshot> parse(std::string_view listOutput);
};

} // namespace brisalon
