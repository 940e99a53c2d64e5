#pragma once

#include "BrisalonCore/FileURL.h"

#include <chrono>
#include <stop_token>

namespace brisalon {

/// Starts the desktop's terminal with `folder` as its working directory, which reaches it
/// as an open folder: its path may have any length and any bytes, and no shell reads it.
/// False when the folder cannot be entered or no terminal starts.
///
/// The terminal outlives the program. One that fails within `patience` has not started,
/// and the next is tried; that long this waits, unless stopped. Any thread.
bool startTerminal(const FileURL& folder, std::chrono::milliseconds patience,
                   const std::stop_token& stop);

} // namespace brisalon
