#include "Brisalon/Platform/linux/PortalFolderPanel.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QStringList>
#include <QWindow>

namespace brisalon {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* object = "/org/freedesktop/portal/desktop";
constexpr const char* chooser = "org.freedesktop.portal.FileChooser";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";

/// The first version that can choose folders.
constexpr uint wantedVersion = 3;

/// How long the portal may take to be started and to answer, in milliseconds. The
/// user waits for a panel all the while.
constexpr int patience = 3000;

/// What the portal calls the window, so that its panel stays in front of it. Empty
/// where windows have no names for others, as under Wayland.
QString parentWindow()
{
    const QWindow* const window = QGuiApplication::focusWindow();
    if (!window || QGuiApplication::platformName() != "xcb")
        return {};
    return "x11:" + QString::number(window->winId(), 16);
}

/// The path in a "file" address.
QByteArray pathOf(const QString& address)
{
    const QByteArray rest = address.toLatin1().mid(static_cast<int>(sizeof "file://") - 1);
    return address.startsWith("file://")
               ? QByteArray::fromPercentEncoding(rest.mid(rest.indexOf('/')))
               : QByteArray();
}

} // namespace

PortalFolderPanel::PortalFolderPanel()
    : watcher_(service, bus_, QDBusServiceWatcher::WatchForUnregistration)
{
    // A portal that goes away takes its panel along and answers no more.
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (state_ == State::shown)
            end(&PortalFolderPanel::dismissed);
    });
}

void PortalFolderPanel::open(const QString& confirmTitle, const QByteArray& folder)
{
    if (isOpen())
        return;
    state_ = State::asking;
    // A call on no bus at all is never answered, not even by a failure.
    if (!bus_.isConnected())
        return end(&PortalFolderPanel::unavailable);
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, object, "org.freedesktop.DBus.Properties", "Get");
    question << QString(chooser) << QStringLiteral("version");
    auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(question, patience), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [=, this] {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        call->deleteLater();
        if (reply.isError() || reply.value().variant().toUInt() < wantedVersion)
            end(&PortalFolderPanel::unavailable);
        else
            show(confirmTitle, folder);
    });
}

void PortalFolderPanel::show(const QString& confirmTitle, const QByteArray& folder)
{
    // The answer may come before the call returns: it is listened for under the name
    // that the request will have.
    const QString token = "brisalon" + QString::number(QRandomGenerator::global()->generate());
    QString sender = bus_.baseService().mid(1);
    sender.replace('.', '_');
    listenTo(QString(object) + "/request/" + sender + '/' + token);

    QDBusMessage message = QDBusMessage::createMethodCall(service, object, chooser, "OpenFile");
    message << parentWindow() << QStringLiteral("Choose a folder")
            << QVariantMap{{"handle_token", token},
                           {"accept_label", confirmTitle},
                           {"directory", true},
                           {"modal", true},
                           // Of bytes and ended by NUL.
                           {"current_folder", QByteArray(folder.constData(), folder.size() + 1)}};
    auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(message, patience), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [call, this] {
        const QDBusPendingReply<QDBusObjectPath> reply = *call;
        call->deleteLater();
        if (state_ != State::asking)
            return; // answered already
        if (reply.isError())
            return end(&PortalFolderPanel::unavailable);
        state_ = State::shown;
        listenTo(reply.value().path()); // older portals choose the name themselves
    });
}

void PortalFolderPanel::listenTo(const QString& request)
{
    if (request == request_)
        return;
    const auto slot = SLOT(onResponse(uint, QVariantMap));
    if (!request_.isEmpty())
        bus_.disconnect(service, request_, requestInterface, "Response", this, slot);
    request_ = request;
    if (!request_.isEmpty())
        bus_.connect(service, request_, requestInterface, "Response", this, slot);
}

void PortalFolderPanel::onResponse(uint response, const QVariantMap& results)
{
    const QByteArray path = pathOf(results.value("uris").toStringList().value(0));
    if (response != 0 || path.isEmpty())
        return end(&PortalFolderPanel::dismissed);
    end(nullptr);
    emit chosen(path);
}

void PortalFolderPanel::end(void (PortalFolderPanel::*outcome)())
{
    state_ = State::closed;
    listenTo({});
    if (outcome)
        emit(this->*outcome)();
}

} // namespace brisalon
