#include "SessionBus.h"

#include <QFile>

namespace brisalon::tests {

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

BusService::BusService(const SessionBus& bus, const QString& name, const QString& path,
                       QObject* object)
    : name_(name), connection_(QDBusConnection::connectToBus(bus.address(), name))
{
    connection_.registerObject(
        path, object, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
    connection_.registerService(name);
}

void BusService::leave()
{
    connection_.unregisterService(name_);
    QDBusConnection::disconnectFromBus(name_);
}

} // namespace brisalon::tests
