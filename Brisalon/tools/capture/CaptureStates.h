#pragma once

#include "Brisalon/Interface/BrisalonApp.h"
#include "BrisalonCore/FileURL.h"
#include "support/MemoryFileAccess.h"
#include "support/ScanGate.h"
#include "support/WindowDriver.h"

#include <span>
#include <string>

namespace brisalon::capture {

/// The running program, what drives it, and what it shall scan.
struct Stage {
    AppState& state;
    ScanGate& gate;
    WindowDriver& driver;
    /// Hides nothing at first, so that the permission is as good as granted.
    MemoryFileAccess& fileAccess;
    /// Where the tool that lists snapshots is looked for; there is none at first.
    std::string snapshotTool;
    FileURL folder;
};

/// A state in which the window can be pictured.
struct CaptureState {
    const char* name;
    const char* meaning;
    /// Brings a program that was just started there, by its operations and by the
    /// events of a user's hands; false when it cannot (no block to click, say).
    bool (*enter)(Stage& stage);
};

/// Every state, in the order in which a user meets them.
std::span<const CaptureState> captureStates();

} // namespace brisalon::capture
