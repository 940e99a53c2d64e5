#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace brisalon::tests {

/// A session bus of the test's own, which the program under test takes for the
/// desktop's. One for the whole test program: connections to the session bus last as
/// long as it does.
class SessionBus {
public:
    /// Null where there is no bus program.
    static SessionBus* start();
    ~SessionBus();

    QString address() const { return address_; }

private:
    QTemporaryDir folder_;
    QProcess process_;
    QString address_;
};

/// A program on that bus, of that name, whose slots and properties others reach at the
/// path; until it leaves.
class BusService {
public:
    BusService(const SessionBus& bus, const QString& name, const QString& path, QObject* object);
    BusService(const BusService&) = delete;
    BusService& operator=(const BusService&) = delete;
    ~BusService() { leave(); }

    void leave();
    void send(const QDBusMessage& message) { connection_.send(message); }

private:
    QString name_;
    QDBusConnection connection_;
};

} // namespace brisalon::tests
