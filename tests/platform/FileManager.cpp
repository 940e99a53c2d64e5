#include "FileManager.h"

#include <QFile>

namespace brisalon::tests {

namespace {

constexpr const char* connectionName = "file manager";
constexpr const char* serviceName = "org.freedesktop.FileManager1";

} // namespace

SessionBus* SessionBus::start()
{
    static SessionBus bus;
    if (bus.address_.isEmpty()) {
        // Without the machine's services, which the usual bus would start on demand.
        const QString settings = bus.folder_.filePath("bus.conf");
        QFile file(settings);
        if (!file.open(QFile::WriteOnly))
            return nullptr;
        file.write("<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
                   "<policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                   "<allow eavesdrop='true'/><allow own='*'/>"
                   "</policy></busconfig>");
        file.close();
        bus.process_.start("dbus-daemon",
                           {"--config-file=" + settings, "--nofork", "--print-address"});
        if (!bus.process_.waitForStarted() || !bus.process_.waitForReadyRead())
            return nullptr;
        bus.address_ = QString::fromLatin1(bus.process_.readLine().trimmed());
        ::qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address_.toLatin1());
    }
    return &bus;
}

SessionBus::~SessionBus()
{
    process_.kill();
    process_.waitForFinished();
}

FileManager::FileManager(const SessionBus& bus, Manners manners)
    : manners_(manners), connection_(QDBusConnection::connectToBus(bus.address(), connectionName))
{
    connection_.registerObject("/org/freedesktop/FileManager1", this,
                               QDBusConnection::ExportAllSlots);
    connection_.registerService(serviceName);
}

FileManager::~FileManager()
{
    connection_.unregisterService(serviceName);
    QDBusConnection::disconnectFromBus(connectionName);
}

void FileManager::ShowItems(const QStringList& addresses, const QString&)
{
    shown.append(addresses);
    if (manners_ == Manners::refuses)
        sendErrorReply(QDBusError::Failed, "not today");
    else if (manners_ == Manners::keepsSilent)
        setDelayedReply(true);
}

} // namespace brisalon::tests
