#pragma once

#include "Brisalon/Platform/FolderPanel.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>

#include <functional>

namespace brisalon {

/// The folder panel as Qt Quick Dialogs have it: the desktop's own chooser where
/// there is one, else Qt's. Its start folder is the dialog's default.
class QuickFolderPanel final : public QObject, public FolderPanel {
    Q_OBJECT

public:
    /// The engine outlives the panel.
    explicit QuickFolderPanel(QQmlEngine& engine);
    ~QuickFolderPanel() override;

    void open(const char* confirmTitle, std::function<void(const FileURL&)> chosen) override;

private slots:
    void accept();

private:
    QQmlEngine& engine_;
    QPointer<QObject> dialog_;
    std::function<void(const FileURL&)> chosen_;
};

} // namespace brisalon
