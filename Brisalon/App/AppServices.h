#pragma once

#include "Brisalon/App/ScanTask.h"
#include "BrisalonCore/LocalVolume.h"
#include "BrisalonCore/SnapshotService.h"

#include <chrono>
#include <functional>
#include <vector>

namespace brisalon {

class BundleInformation;
class DefaultsStore;
class FileAccess;
class FolderPanel;
class Workspace;

/// What the model works with: the desktop's in the program, stand-ins in tests.
/// Everything referred to outlives the model.
struct AppServices {
    DefaultsStore& defaults;
    FolderPanel& folderPanel;
    Workspace& workspace;
    const FileAccess& fileAccess;
    const BundleInformation& bundle;
    SnapshotService snapshots = {};
    /// Stands in for the scanner's when set.
    ScanTask::Scan scan = {};
    std::function<std::vector<LocalVolume>()> disks = LocalVolume::mounted;
    std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
};

} // namespace brisalon
