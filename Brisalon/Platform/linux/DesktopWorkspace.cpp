#include "Brisalon/Platform/DesktopWorkspace.h"

#include "Brisalon/Platform/PercentEncoding.h"
#include "Brisalon/Platform/linux/DesktopTrash.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <set>
#include <system_error>
#include <utility>

namespace brisalon {

namespace {

QByteArray fileAddress(const FileURL& url)
{
    return QByteArray::fromStdString("file://" + percentEncoded(url.path()));
}

/// What the system says of an item that it refuses. Of one that has changed, and of
/// a volume without a Trash, it says nothing.
std::string description(const TrashItem& item, const TrashFailure& failure)
{
    if (failure.reason != TrashFailure::Reason::refused)
        return {};
    return std::string(item.url.lastPathComponent()) + ": " +
           std::generic_category().message(failure.error);
}

Workspace::Recycled putAll(const std::vector<TrashItem>& items, const FileURL& homeTrash,
                           const std::stop_token& stop)
{
    DesktopTrash trash(homeTrash);
    Workspace::Recycled recycled;
    for (const TrashItem& item : items) {
        if (stop.stop_requested())
            break;
        // An item that is asked for twice is gone at its second turn.
        const auto result = trash.put(item);
        if (const FileURL* const destination = std::get_if<FileURL>(&result))
            recycled.moved.push_back({item.url, *destination});
        else if (recycled.error.empty())
            recycled.error = description(item, std::get<TrashFailure>(result));
    }
    return recycled;
}

} // namespace

void DesktopWorkspace::recycle(std::vector<TrashItem> items, Completion completion)
{
    tasks_.start([items = std::move(items), completion = std::move(completion),
                  homeTrash = DesktopTrash::homeTrash()](const std::stop_token& stop) {
        return [completion, recycled = putAll(items, homeTrash, stop)] { completion(recycled); };
    });
}

void DesktopWorkspace::reveal(const FileURL& item)
{
    // The interface that file managers share (freedesktop.org, "File Manager
    // D-Bus Interface").
    QDBusMessage message = QDBusMessage::createMethodCall(
        "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
        "org.freedesktop.FileManager1", "ShowItems");
    message << QStringList(QString::fromLatin1(fileAddress(item))) << QString();
    const auto openFolder = [folder = item.deletingLastPathComponent()] {
        QDesktopServices::openUrl(QUrl::fromEncoded(fileAddress(folder)));
    };
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // A call on no bus at all is never answered, not even by a failure.
    if (!bus.isConnected())
        return openFolder();
    auto* const call = new QDBusPendingCallWatcher(
        bus.asyncCall(message, static_cast<int>(patience_.count())), &calls_);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, &calls_, [call, openFolder] {
        if (call->isError())
            openFolder();
        call->deleteLater();
    });
}

bool DesktopWorkspace::openAddress(std::string_view address)
{
    const QUrl url = QUrl::fromEncoded(
        QByteArray(address.data(), static_cast<qsizetype>(address.size())), QUrl::StrictMode);
    return url.isValid() && !url.scheme().isEmpty() && QDesktopServices::openUrl(url);
}

} // namespace brisalon
