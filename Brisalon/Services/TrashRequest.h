#pragma once

#include "Brisalon/Platform/TrashItem.h"

#include "BrisalonCore/FileURL.h"

#include <cstdint>
#include <stop_token>
#include <string>
#include <vector>

namespace brisalon {

/// A move to the Trash that waits for the user's confirmation.
///
/// Make one with `make` when the user asks, keep it while the question is shown, and
/// hand its `items` to TrashService when the answer is yes. The items remember what
/// was there when the question was asked; what has changed since then is not moved.
struct TrashRequest {
    /// What is to be moved, in the order of the selection; protected items are not
    /// among them. Never empty in a request that is shown.
    std::vector<FileURL> urls;
    /// The size of the whole selection, protected items included.
    std::int64_t bytes = 0;
    /// How many items were left out as protected.
    std::int64_t blockedCount = 0;

    /// The `urls` as they were when the request was made. How the request is carried
    /// out rather than what it asks for: no part of its equality or its id.
    std::vector<TrashItem> items;

    /// The request for a selection: leaves out what must not be moved, and records
    /// the rest. Without `urls` there is nothing to confirm, because nothing was
    /// chosen or, by `blockedCount`, all of it is protected. Asks the file system, which
    /// takes seconds for a million items, until it is told to stop. Any thread.
    static TrashRequest make(const std::vector<FileURL>& selection, std::int64_t bytes,
                             const std::stop_token& stop = {});

    /// The size of the item at that place of `urls`. Of several each is a file; a folder is
    /// asked about alone, and its size is the selection's.
    std::int64_t bytesOf(std::size_t index) const;

    /// The paths of `urls` joined with "|".
    std::string id() const;

    friend bool operator==(const TrashRequest& a, const TrashRequest& b)
    {
        return a.urls == b.urls && a.bytes == b.bytes && a.blockedCount == b.blockedCount;
    }
};

} // namespace brisalon
