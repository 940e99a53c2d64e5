#pragma once

#include "Brisalon/Platform/BackgroundTasks.h"
#include "Brisalon/Platform/Workspace.h"

#include <QObject>

namespace brisalon {

/// The workspace of the desktop that the program runs on. Needs a QGuiApplication,
/// which outlives it.
///
/// Destruction stops a move after the item that it is at, and waits for that.
class DesktopWorkspace final : public Workspace {
public:
    void recycle(std::vector<TrashItem> items, Completion completion) override;

    /// Asks the desktop's file manager, and opens the folder that holds the item
    /// when it has not answered within five seconds or there is none that can be
    /// asked.
    void reveal(const FileURL& item) override;

    bool openAddress(std::string_view address) override;

private:
    BackgroundTasks tasks_;
    QObject calls_; ///< owns the calls to the file manager that are under way
};

} // namespace brisalon
