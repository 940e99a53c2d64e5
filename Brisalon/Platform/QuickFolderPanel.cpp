#include "Brisalon/Platform/QuickFolderPanel.h"

#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QUrl>
#include <QWindow>

#include <utility>

namespace brisalon {

QuickFolderPanel::QuickFolderPanel(QQmlEngine& engine) : engine_(engine) {}

QuickFolderPanel::~QuickFolderPanel()
{
    delete dialog_;
}

void QuickFolderPanel::open(const char* confirmTitle, std::function<void(const FileURL&)> chosen)
{
    chosen_ = std::move(chosen);
    if (!dialog_) {
        // Made here rather than in a view, because the panel is a service of the
        // model: whatever asks for a folder gets the same one.
        QQmlComponent component(&engine_);
        component.setData("import QtQuick\n"
                          "import QtQuick.Controls\n"
                          "import QtQuick.Dialogs\n"
                          "FolderDialog { modality: Qt.ApplicationModal }",
                          QUrl());
        dialog_ = component.create();
        if (!dialog_) {
            qWarning("No folder panel: %s", qPrintable(component.errorString()));
            return;
        }
        connect(dialog_, SIGNAL(accepted()), this, SLOT(accept()));
    }
    dialog_->setProperty("acceptLabel", QString::fromUtf8(confirmTitle));
    if (QWindow* const window = QGuiApplication::focusWindow())
        dialog_->setProperty("parentWindow", QVariant::fromValue(window));
    QMetaObject::invokeMethod(dialog_, "open");
}

void QuickFolderPanel::accept()
{
    const QString path = dialog_->property("selectedFolder").toUrl().toLocalFile();
    const auto chosen = std::exchange(chosen_, nullptr);
    if (chosen && !path.isEmpty())
        chosen(FileURL(QFile::encodeName(path).toStdString()));
}

} // namespace brisalon
