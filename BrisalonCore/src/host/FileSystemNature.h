#pragma once

#include <cstdint>
#include <string_view>

namespace brisalon::host {

/// What a file system stands for in a map of disk space.
enum class Nature : std::uint8_t {
    kernel, ///< the kernel's own data dressed as files, or a trigger that mounts
    remote, ///< answered over a network or by a program, either of which can hang
    view,   ///< shows what is stored in other folders, its layers
    image,  ///< shows what is stored in a file, unless it has a disk of its own
    memory, ///< stored where it is mounted, until the machine stops
    disk,   ///< stored where it is mounted
};

/// The nature of file systems of that type (Mount::type). Those that are not known are
/// disks.
Nature natureOf(std::string_view type) noexcept;

/// Whether a question to such a file system may never be answered: it is remote, or a
/// disk that a program drives.
bool canHang(std::string_view type) noexcept;

} // namespace brisalon::host
