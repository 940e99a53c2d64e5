#pragma once

#include "BrisalonCore/FileURL.h"

#include <memory>

namespace brisalon {

namespace host {
class ProtectedPlaces;
}

/// What may be moved to the Trash, by the system as it was when this was made: what is
/// mounted, and where the home is. For questions about many items; a single one can be
/// asked of SkipRules. Immutable; any thread.
class DeleteRules {
public:
    /// Asks the system; not beside a change of the environment.
    DeleteRules();
    DeleteRules(const DeleteRules&) = delete;
    DeleteRules& operator=(const DeleteRules&) = delete;
    ~DeleteRules();

    /// Whether the item may be moved to the Trash: false for the folders that a disk and
    /// a system are made of, by a fixed table and the desktop's own, for a mounted
    /// volume, and for the user's home folder and those above it. They are recognised
    /// by what they are, whatever path, link or further mount leads to them; a folder
    /// that holds one of them is refused as well. Asks the file system.
    bool allow(const FileURL& url) const;

private:
    std::unique_ptr<const host::ProtectedPlaces> places_;
};

} // namespace brisalon
