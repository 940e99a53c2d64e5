#pragma once

#include "BrisalonCore/MountTable.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brisalon::host {

/// Whether it is one of the top-level folders that the system is made of, lies in one
/// of those whose contents are the system's own, or is the folder `home` or one that
/// contains it. Goes by the text alone, compared exactly: the path is absolute and
/// normalised, its links resolved.
bool isProtectedPlace(std::string_view path, std::string_view home) noexcept;

/// This desktop's own places that must never be moved to the Trash, beside the rules
/// that hold everywhere, and the names under which the system knows an item: what must
/// stay is recognised by what it is, whatever path leads to it.
///
/// Paths are absolute and normalised, their links resolved. Immutable; any thread.
class ProtectedPlaces {
public:
    /// With the mounts, and the home folders of the current user (the environment's
    /// and the account's), as they are now. Asks the system; not beside a change of
    /// the environment.
    ProtectedPlaces();

    /// Every path at which the item, or something in it, stands in the system: its
    /// own, those through other mounts of the same storage, be they covered or not,
    /// and those through links at the top of the system.
    std::vector<std::string> names(std::string_view path) const;

    /// Whether that name is protected: by isProtectedPlace, for all of the homes.
    bool isProtected(std::string_view name) const noexcept;

    /// Whether the item is the root of a mounted volume, what one is mounted on, or a
    /// volume that is mounted somewhere else, or holds such a one. Asks the system
    /// about the item.
    bool isVolume(std::string_view path) const;

private:
    struct Link {
        std::string path;
        std::string target;
    };

    MountTable mounts_;
    std::vector<std::string> homes_;
    std::vector<Link> links_;
};

} // namespace brisalon::host
