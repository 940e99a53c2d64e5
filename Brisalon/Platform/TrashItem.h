#pragma once

#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/ItemStatus.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace brisalon {

/// An item that is to be moved to the Trash, as it was when the user asked for it.
///
/// Between the question and the answer anything can happen to a file system; the
/// record makes sure that the user's yes moves what the user was asked about, and
/// nothing that has taken its place.
struct TrashItem {
    /// As it was asked for; what outcomes call it by.
    FileURL url;
    /// The same place with the links of the folders above resolved. It is reached
    /// again without following any.
    FileURL location;
    /// Absent when there was no such item, or it could not be reached: it will not
    /// be moved.
    std::optional<ItemIdentity> identity;
    /// What it occupied itself, a folder without what is in it.
    std::int64_t allocatedBytes = 0;

    /// Records the items as they are now, in order. Thousands in one folder are
    /// recorded in milliseconds. Any thread.
    static std::vector<TrashItem> record(std::span<const FileURL> urls);
};

} // namespace brisalon
