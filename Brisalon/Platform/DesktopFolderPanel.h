#pragma once

#include "Brisalon/Platform/FolderPanel.h"

#include <functional>
#include <memory>

namespace brisalon {

/// The folder panel of the desktop that the program runs on, or Qt's where that has
/// none. Begins in the home folder and later in the folder chosen last; otherwise each
/// panel is a new one. Needs a QApplication.
class DesktopFolderPanel final : public FolderPanel {
public:
    DesktopFolderPanel();
    ~DesktopFolderPanel() override;

    void open(const char* confirmTitle, std::function<void(const FileURL&)> chosen) override;

private:
    class Panels;
    std::unique_ptr<Panels> panels_;
};

} // namespace brisalon
