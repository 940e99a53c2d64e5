#pragma once

#include "BrisalonCore/FileURL.h"

namespace brisalon {

/// What the desktop lets this program read. Main thread.
class FileAccess {
public:
    FileAccess() = default;
    FileAccess(const FileAccess&) = delete;
    FileAccess& operator=(const FileAccess&) = delete;
    virtual ~FileAccess() = default;

    /// Whether the desktop hides private places of the user from programs without
    /// a permission of their own.
    virtual bool hidesPrivatePlaces() const = 0;

    /// Whether the program can read the item; false when there is none.
    virtual bool isReadable(const FileURL& url) const = 0;

    /// Whether there is an item of that path, links followed.
    virtual bool exists(const FileURL& url) const = 0;
};

} // namespace brisalon
