#include "Brisalon/Platform/linux/PortalFolderPanel.h"

#include "SessionBus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace brisalon::tests {

/// A desktop's portal, which answers when it is told to.
class Portal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")
    Q_PROPERTY(uint version MEMBER version)

public:
    explicit Portal(const SessionBus& bus)
        : service_(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", this)
    {
    }

    void leave() { service_.leave(); }
    void answer(uint response, const QStringList& uris)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(request, "org.freedesktop.portal.Request", "Response");
        signal << response << QVariantMap{{"uris", uris}};
        service_.send(signal);
    }

    uint version = 3;
    bool namesItself = false; ///< does not take the name that the program asks for
    QString request;
    QVariantMap options;

public slots:
    QDBusObjectPath OpenFile(const QString& /*parent*/, const QString& /*title*/,
                             const QVariantMap& given)
    {
        options = given;
        QString sender = message().service().mid(1);
        sender.replace('.', '_');
        request = "/org/freedesktop/portal/desktop/request/" + sender + '/' +
                  (namesItself ? "own" : given.value("handle_token").toString());
        return QDBusObjectPath(request);
    }

private:
    BusService service_;
};

namespace {

class PortalFolderPanelTest : public ::testing::Test {
protected:
    SessionBus* bus = SessionBus::start();
    PortalFolderPanel panel;
    QSignalSpy chosen{&panel, &PortalFolderPanel::chosen};
    QSignalSpy dismissed{&panel, &PortalFolderPanel::dismissed};
    QSignalSpy unavailable{&panel, &PortalFolderPanel::unavailable};

    void SetUp() override
    {
        if (!bus)
            GTEST_SKIP() << "needs dbus-daemon";
    }
    void open(const Portal& portal)
    {
        panel.open("Scan", "/home/\xff u");
        ASSERT_TRUE(QTest::qWaitFor([&] { return !portal.request.isEmpty(); }));
    }
};

TEST_F(PortalFolderPanelTest, TheChosenFolderArrivesByItsExactBytes)
{
    for (const bool namesItself : {false, true}) {
        Portal portal(*bus);
        portal.namesItself = namesItself;
        open(portal);
        EXPECT_EQ(portal.options.value("current_folder").toByteArray(),
                  QByteArray("/home/\xff u\0", 10));
        EXPECT_EQ(portal.options.value("accept_label"), "Scan");
        EXPECT_TRUE(portal.options.value("directory").toBool());
        EXPECT_TRUE(panel.isOpen());
        panel.open("Scan", "/"); // a second request changes nothing
        QTest::qWait(namesItself ? 100 : 0);
        portal.answer(0, {"file:///a%20b/%FF%0A%25"});
        ASSERT_TRUE(QTest::qWaitFor([&] { return !chosen.isEmpty(); }));
        EXPECT_EQ(chosen.takeFirst().constFirst().toByteArray(), "/a b/\xff\n%");
        EXPECT_FALSE(panel.isOpen());
    }
    EXPECT_TRUE(dismissed.isEmpty() && unavailable.isEmpty());
}

TEST_F(PortalFolderPanelTest, DismissalsAndAPortalThatGoesAwayEndIt)
{
    for (const int way : {0, 1, 2}) {
        Portal portal(*bus);
        open(portal);
        QTest::qWait(100); // its reply, too, has arrived
        if (way == 0)
            portal.answer(1, {});
        else if (way == 1)
            portal.answer(0, {"sftp://host/folder"});
        else
            portal.leave();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !dismissed.isEmpty(); })) << way;
        dismissed.clear();
        EXPECT_FALSE(panel.isOpen());
    }
    EXPECT_TRUE(chosen.isEmpty() && unavailable.isEmpty());
}

TEST_F(PortalFolderPanelTest, WithoutOneThatChoosesFoldersItSaysSo)
{
    panel.open("Scan", "/");
    ASSERT_TRUE(QTest::qWaitFor([&] { return unavailable.size() == 1; }));
    Portal portal(*bus);
    portal.version = 2;
    panel.open("Scan", "/");
    ASSERT_TRUE(QTest::qWaitFor([&] { return unavailable.size() == 2; }));
    EXPECT_TRUE(portal.request.isEmpty());
    EXPECT_FALSE(panel.isOpen());
}

} // namespace

} // namespace brisalon::tests

#include "PortalFolderPanelTests.moc"
