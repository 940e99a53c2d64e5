#pragma once

#include "BrisalonCore/Descriptor.h"
#include "BrisalonCore/ItemStatus.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisalon {

/// The folder of that name in the folder `base`, for reaching what is in it. Never
/// follows a link at the end of the path. Invalid with the reason in errno.
Descriptor openFolder(int base, const char* path) noexcept;

/// A folder that was reached from "/" one step at a time and without following a
/// link, so that it is certain to be the one at that very path; and the top folder
/// of the volume that it lies on, met on the way.
struct ReachedFolder {
    Descriptor folder;
    MountIdentity mount;
    Descriptor top;
    std::string topPath;

    /// `path` is absolute and resolved, of any length. Nothing when a step is
    /// missing, a link, no folder, or may not be passed, with the reason in errno.
    static std::optional<ReachedFolder> at(std::string_view path);
};

} // namespace brisalon
