#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace brisalon {

/// The folder panel that the desktop shows for programs through its portal
/// (interface org.freedesktop.portal.FileChooser, version 3 or newer, which can choose
/// folders). Main thread.
///
/// Every call is asynchronous: a portal that has to be started first, or hangs, never
/// holds up the window.
class PortalFolderPanel final : public QObject {
    Q_OBJECT

public:
    PortalFolderPanel();

    /// Whether a request is under way or the panel shown; then it takes no other.
    bool isOpen() const noexcept { return state_ != State::closed; }

    /// Shows the panel, in `folder` at first, with that text on its confirm button.
    /// Ends with one of the signals, which may come before this returns.
    void open(const QString& confirmTitle, const QByteArray& folder);

signals:
    /// The path of the chosen folder.
    void chosen(const QByteArray& path);
    void dismissed();
    /// The desktop has no such panel, or it does not answer: nothing was shown.
    void unavailable();

private slots:
    void onResponse(uint response, const QVariantMap& results);

private:
    enum class State { closed, asking, shown };

    void show(const QString& confirmTitle, const QByteArray& folder);
    void end(void (PortalFolderPanel::*outcome)());
    void listenTo(const QString& request);

    QDBusConnection bus_ = QDBusConnection::sessionBus();
    QDBusServiceWatcher watcher_;
    State state_ = State::closed;
    QString request_; ///< the object that tells the user's answer
};

} // namespace brisalon
