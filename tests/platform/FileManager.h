#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>

namespace brisalon::tests {

/// A session bus of the test's own, which the program under test takes for the
/// desktop's. One for the whole test program: connections to the session bus last as
/// long as it does.
class SessionBus {
public:
    /// Null where there is no bus program.
    static SessionBus* start();

    QString address() const { return address_; }
    ~SessionBus();

private:
    QTemporaryDir folder_;
    QProcess process_;
    QString address_;
};

/// A file manager on that bus, with manners to choose.
class FileManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum class Manners : std::uint8_t { answers, refuses, keepsSilent };

    FileManager(const SessionBus& bus, Manners manners);
    ~FileManager() override;

    /// What it was asked to show, one list for each call.
    QList<QStringList> shown;

public slots:
    void ShowItems(const QStringList& addresses, const QString& startup);

private:
    Manners manners_;
    QDBusConnection connection_;
};

} // namespace brisalon::tests
