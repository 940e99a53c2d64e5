#pragma once

namespace brisalon {

/// The system's permission to read protected places.
class FullDiskAccess {
public:
    FullDiskAccess() = delete;

    /// Whether the program holds it. Always true on Linux, which has no such
    /// permission: what a user may read, every program of theirs may read.
    static bool isGranted();
};

} // namespace brisalon
