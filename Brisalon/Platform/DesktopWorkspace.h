#pragma once

#include "Brisalon/Platform/BackgroundTasks.h"
#include "Brisalon/Platform/Workspace.h"

#include <QObject>

#include <chrono>

namespace brisalon {

/// The workspace of the desktop that the program runs on. Needs a QGuiApplication,
/// which outlives it.
///
/// Destruction stops a move after the item that it is at, and waits for that.
class DesktopWorkspace final : public Workspace {
public:
    /// `patience` is how long the file manager may take to answer; it may have to be
    /// started first.
    explicit DesktopWorkspace(std::chrono::milliseconds patience = std::chrono::seconds(5))
        : patience_(patience)
    {
    }

    void recycle(std::vector<TrashItem> items, Completion completion) override;

    /// Asks the desktop's file manager, and opens the folder that holds the item
    /// when there is none that can be asked or it does not answer in time.
    void reveal(const FileURL& item, Started started) override;

    void openTerminal(const FileURL& folder, Started started) override;

    bool openAddress(std::string_view address) override;

private:
    std::chrono::milliseconds patience_;
    BackgroundTasks tasks_;
    QObject calls_; ///< owns the calls to the file manager that are under way
};

} // namespace brisalon
