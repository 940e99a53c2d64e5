#include "Brisalon/Platform/DesktopFolderPanel.h"

#include "Brisalon/Platform/HomeFolder.h"

#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace brisalon {

DesktopFolderPanel::DesktopFolderPanel() = default;

DesktopFolderPanel::~DesktopFolderPanel()
{
    delete dialog_;
}

void DesktopFolderPanel::open(const char* confirmTitle, std::function<void(const FileURL&)> chosen)
{
    chosen_ = std::move(chosen);
    if (!dialog_) {
        dialog_ = new QFileDialog;
        dialog_->setWindowTitle("Choose a folder");
        dialog_->setFileMode(QFileDialog::Directory);
        dialog_->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly);
        dialog_->resize(800, 520);
        dialog_->setWindowModality(Qt::ApplicationModal);
        dialog_->setDirectory(QFile::decodeName(homeFolder().path().c_str()));
        connect(dialog_, &QFileDialog::fileSelected, this, &DesktopFolderPanel::accept);
    }
    dialog_->setLabelText(QFileDialog::Accept, QString::fromUtf8(confirmTitle));
    if (QWindow* const window = QGuiApplication::focusWindow();
        window && window != dialog_->windowHandle()) {
        // The dialog has a window only once it was asked for its id.
        dialog_->winId();
        dialog_->windowHandle()->setTransientParent(window);
    }
    dialog_->open();
    dialog_->raise();
}

void DesktopFolderPanel::accept(const QString& path)
{
    const auto chosen = std::exchange(chosen_, nullptr);
    if (chosen && !path.isEmpty())
        chosen(FileURL(QFile::encodeName(path).toStdString()));
}

} // namespace brisalon
