#pragma once

#include "BrisalonCore/FileURL.h"

#include <functional>

namespace brisalon {

/// The desktop's way to ask the user for one folder. Main thread.
class FolderPanel {
public:
    FolderPanel() = default;
    FolderPanel(const FolderPanel&) = delete;
    FolderPanel& operator=(const FolderPanel&) = delete;
    virtual ~FolderPanel() = default;

    /// Shows the panel, modal to the application: one existing folder can be
    /// chosen, and the confirm button says `confirmTitle`. Returns at once;
    /// `chosen` is called when the user confirms, and never when the panel is
    /// dismissed. While a panel is open, another request only brings it back up.
    virtual void open(const char* confirmTitle, std::function<void(const FileURL&)> chosen) = 0;
};

} // namespace brisalon
