#include "Brisalon/Platform/DesktopWorkspace.h"

#include "Brisalon/Platform/PercentEncoding.h"
#include "Brisalon/Platform/linux/DesktopTerminal.h"
#include "Brisalon/Platform/linux/DesktopTrash.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <memory>
#include <system_error>
#include <utility>

namespace brisalon {

namespace {

/// What has run for so long has found its display, and what else it needs to start.
constexpr std::chrono::seconds startTime(1);

QByteArray fileAddress(const FileURL& url)
{
    return QByteArray::fromStdString("file://" + percentEncoded(url.path()));
}

/// Why an item stays, to be shown. Of one that has changed there is nothing to say.
std::string description(const TrashItem& item, const TrashFailure& failure)
{
    std::string reason;
    if (failure.reason == TrashFailure::Reason::holdsVolume)
        reason = "A volume is mounted in it";
    else if (failure.error != 0)
        reason = std::generic_category().message(failure.error);
    else
        return {};
    return std::string(item.url.lastPathComponent()) + ": " + reason;
}

void putAll(const std::vector<TrashItem>& items, const FileURL& homeTrash,
            const std::stop_token& stop, Workspace::Recycled& recycled)
{
    // Before the first item moves, since there may be no memory for it afterwards.
    recycled.moved.reserve(items.size());
    // An item that is asked for twice is gone at its second turn.
    const auto results = DesktopTrash(homeTrash).put(items, stop);
    for (std::size_t i = 0; i < items.size(); ++i)
        if (const FileURL* const destination = std::get_if<FileURL>(&results[i]))
            recycled.moved.push_back({items[i].url, *destination});
    std::string error;
    for (std::size_t i = 0; i < items.size() && error.empty(); ++i)
        if (const TrashFailure* const failure = std::get_if<TrashFailure>(&results[i]))
            error = description(items[i], *failure);
    recycled.error = std::move(error);
}

} // namespace

void DesktopWorkspace::recycle(std::vector<TrashItem> items, Completion completion)
{
    const auto recycled = std::make_shared<Recycled>();
    recycled->error = BackgroundTasks::noMemory();
    tasks_.start(
        [items = std::move(items), homeTrash = DesktopTrash::homeTrash(), recycled](
            const BackgroundTasks::Task& task) { putAll(items, homeTrash, task.stop, *recycled); },
        [completion = std::move(completion), recycled](const std::stop_token&) {
            completion(std::move(*recycled));
        });
}

void DesktopWorkspace::reveal(const FileURL& item, Started started)
{
    // The interface that file managers share (freedesktop.org, "File Manager
    // D-Bus Interface").
    QDBusMessage message = QDBusMessage::createMethodCall(
        "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
        "org.freedesktop.FileManager1", "ShowItems");
    message << QStringList(QString::fromLatin1(fileAddress(item))) << QString();
    const auto openFolder = [folder = item.deletingLastPathComponent(), started] {
        started(QDesktopServices::openUrl(QUrl::fromEncoded(fileAddress(folder))));
    };
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // A call on no bus at all is never answered, not even by a failure.
    if (!bus.isConnected())
        return openFolder();
    auto* const call = new QDBusPendingCallWatcher(
        bus.asyncCall(message, static_cast<int>(patience_.count())), &calls_);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, &calls_, [=] {
        call->deleteLater();
        if (call->isError())
            openFolder();
        else
            started(true);
    });
}

void DesktopWorkspace::openTerminal(const FileURL& folder, Started started)
{
    const auto hasStarted = std::make_shared<bool>(false);
    tasks_.start(
        [folder, hasStarted](const BackgroundTasks::Task& task) {
            *hasStarted = startTerminal(folder, startTime, task.stop);
        },
        [started = std::move(started), hasStarted](const std::stop_token&) {
            started(*hasStarted);
        });
}

bool DesktopWorkspace::openAddress(std::string_view address)
{
    const QUrl url = QUrl::fromEncoded(
        QByteArray(address.data(), static_cast<qsizetype>(address.size())), QUrl::StrictMode);
    return url.isValid() && !url.scheme().isEmpty() && QDesktopServices::openUrl(url);
}

} // namespace brisalon
