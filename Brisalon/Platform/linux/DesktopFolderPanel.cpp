#include "Brisalon/Platform/DesktopFolderPanel.h"

#include "Brisalon/Platform/HomeFolder.h"
#include "Brisalon/Platform/linux/PortalFolderPanel.h"

#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

#include <utility>

namespace brisalon {

/// The desktop's panel through its portal; where none answers, the one of Qt's platform
/// theme, or Qt's own.
class DesktopFolderPanel::Panels {
public:
    Panels()
    {
        QObject::connect(&portal_, &PortalFolderPanel::chosen, &portal_,
                         [this](const QByteArray& path) { accept(path); });
        QObject::connect(&portal_, &PortalFolderPanel::unavailable, &portal_,
                         [this] { openDialog(); });
    }
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;
    ~Panels() { delete dialog_; }

    void open(const char* confirmTitle, std::function<void(const FileURL&)> chosen)
    {
        chosen_ = std::move(chosen);
        confirmTitle_ = QString::fromUtf8(confirmTitle);
        if (dialog_ && dialog_->isVisible())
            dialog_->raise();
        else
            portal_.open(confirmTitle_, folder_);
    }

private:
    /// A new one each time: what was typed into the last one is of no use, and its
    /// suggestions go away with it.
    void openDialog()
    {
        dialog_ = new QFileDialog;
        QObject::connect(dialog_, &QDialog::finished, dialog_, &QObject::deleteLater);
        dialog_->setWindowTitle("Choose a folder");
        dialog_->setFileMode(QFileDialog::Directory);
        dialog_->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly);
        dialog_->resize(800, 520);
        dialog_->setWindowModality(Qt::ApplicationModal);
        dialog_->setDirectory(QFile::decodeName(folder_));
        dialog_->setLabelText(QFileDialog::Accept, confirmTitle_);
        QObject::connect(dialog_, &QFileDialog::fileSelected, dialog_,
                         [this](const QString& path) { accept(QFile::encodeName(path)); });
        if (QWindow* const window = QGuiApplication::focusWindow()) {
            // The dialog has a window only once it was asked for its id.
            dialog_->winId();
            dialog_->windowHandle()->setTransientParent(window);
        }
        dialog_->open();
    }

    void accept(const QByteArray& path)
    {
        const auto chosen = std::exchange(chosen_, nullptr);
        if (path.isEmpty())
            return;
        folder_ = path;
        if (chosen)
            chosen(FileURL(path.toStdString()));
    }

    PortalFolderPanel portal_;
    QPointer<QFileDialog> dialog_;
    QByteArray folder_ = QByteArray::fromStdString(homeFolder().path());
    QString confirmTitle_;
    std::function<void(const FileURL&)> chosen_;
};

DesktopFolderPanel::DesktopFolderPanel() : panels_(std::make_unique<Panels>()) {}

DesktopFolderPanel::~DesktopFolderPanel() = default;

void DesktopFolderPanel::open(const char* confirmTitle, std::function<void(const FileURL&)> chosen)
{
    panels_->open(confirmTitle, std::move(chosen));
}

} // namespace brisalon
