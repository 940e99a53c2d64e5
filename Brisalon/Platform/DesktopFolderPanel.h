#pragma once

#include "Brisalon/Platform/FolderPanel.h"

#include <QObject>
#include <QPointer>

#include <functional>

class QFileDialog;

namespace brisalon {

/// The folder panel of the desktop that the program runs on, or Qt's where that has
/// none. Begins in the home folder and later where it was left. Needs a QApplication.
class DesktopFolderPanel final : public QObject, public FolderPanel {
    Q_OBJECT

public:
    DesktopFolderPanel();
    ~DesktopFolderPanel() override;

    void open(const char* confirmTitle, std::function<void(const FileURL&)> chosen) override;

private:
    void accept(const QString& path);

    QPointer<QFileDialog> dialog_;
    std::function<void(const FileURL&)> chosen_;
};

} // namespace brisalon
