#pragma once

namespace brisalon {

class BundleInformation;
class FileAccess;
class Workspace;

/// The system's permission to read the private places of a user's disk, without
/// which a map of the disk misses them. A program cannot ask for it: it can only
/// find out whether it has it, and lead the user to where it is given. Main thread.
class FullDiskAccess {
public:
    FullDiskAccess() = delete;

    /// Whether the program has it: it can read one of the places that are hidden
    /// without, or the desktop hides none.
    static bool isGranted(const FileAccess& access);

    /// Opens the system's page of the permission. Nothing happens when it cannot be
    /// opened, or the desktop has no such permission.
    static void openSettings(const FileAccess& access, Workspace& workspace);

    /// Shows the program in the file manager, to be dragged to that page.
    static void revealAppInFinder(Workspace& workspace, const BundleInformation& bundle);
};

} // namespace brisalon
