#include "Brisalon/Platform/DesktopWorkspace.h"

#include "SessionBus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace brisalon::tests {

enum class Manners : std::uint8_t { answers, refuses, keepsSilent };

/// A file manager on the bus, with manners to choose.
class FileManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    FileManager(const SessionBus& bus, Manners manners)
        : manners_(manners),
          service_(bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", this)
    {
    }

    /// What it was asked to show, one list for each call.
    QList<QStringList> shown;

public slots:
    void ShowItems(const QStringList& addresses, const QString& /*startup*/)
    {
        shown.append(addresses);
        if (manners_ == Manners::refuses)
            sendErrorReply(QDBusError::Failed, "not today");
        else if (manners_ == Manners::keepsSilent)
            setDelayedReply(true);
    }

private:
    Manners manners_;
    BusService service_;
};

namespace {

/// Takes what the desktop would open otherwise.
class Opener : public QObject {
    Q_OBJECT

public:
    Opener()
    {
        QDesktopServices::setUrlHandler("file", this, "open");
        QDesktopServices::setUrlHandler("x-test", this, "open");
    }
    ~Opener() override
    {
        QDesktopServices::unsetUrlHandler("file");
        QDesktopServices::unsetUrlHandler("x-test");
    }

    QList<QByteArray> opened;

public slots:
    void open(const QUrl& url) { opened.append(url.toEncoded()); }
};

class RevealTest : public ::testing::Test {
protected:
    SessionBus* bus = SessionBus::start();
    Opener opener;
    QList<bool> starts; ///< what was told of each
    const Workspace::Started note = [this](bool hasStarted) { starts.append(hasStarted); };
    DesktopWorkspace workspace{std::chrono::seconds(20)};

    void SetUp() override
    {
        if (!bus)
            GTEST_SKIP() << "needs dbus-daemon";
    }
    bool waitForOpened()
    {
        return QTest::qWaitFor([this] { return !opener.opened.isEmpty(); });
    }
};

TEST_F(RevealTest, TheFileManagerIsAskedByTheExactBytes)
{
    FileManager manager(*bus, Manners::answers);
    workspace.reveal(FileURL("/a b/100%\xff\n\xc3\xa9"), note);
    EXPECT_TRUE(manager.shown.isEmpty()) << "not before the call returns";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown.constFirst(), QStringList("file:///a%20b/100%25%FF%0A%C3%A9"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !starts.isEmpty(); })) << "its answer";
    EXPECT_EQ(starts, QList<bool>{true});
    EXPECT_TRUE(opener.opened.isEmpty());
}

TEST_F(RevealTest, WithoutAFileManagerTheFolderOpens)
{
    workspace.reveal(FileURL("/a b/\xff/item"), note);
    ASSERT_TRUE(waitForOpened());
    EXPECT_EQ(opener.opened, QList<QByteArray>{"file:///a%20b/%FF"});
    EXPECT_EQ(starts, QList<bool>{true});
    // Off-screen, Qt has nothing of its own that opens folders.
    QDesktopServices::unsetUrlHandler("file");
    workspace.reveal(FileURL("/folder/item"), note);
    ASSERT_TRUE(QTest::qWaitFor([this] { return starts.size() > 1; }));
    EXPECT_FALSE(starts.constLast());
}

TEST_F(RevealTest, WithoutItsAnswerTheFolderOpens)
{
    DesktopWorkspace impatient(std::chrono::milliseconds(50));
    for (const Manners manners : {Manners::refuses, Manners::keepsSilent}) {
        FileManager manager(*bus, manners);
        (manners == Manners::refuses ? workspace : impatient).reveal(FileURL("/folder/item"), note);
        ASSERT_TRUE(waitForOpened());
        EXPECT_EQ(opener.opened, QList<QByteArray>{"file:///folder"});
        EXPECT_EQ(manager.shown.size(), 1);
        opener.opened.clear();
    }

    // A program that ends in between opens nothing any more.
    FileManager manager(*bus, Manners::keepsSilent);
    auto leaving = std::make_unique<DesktopWorkspace>(std::chrono::milliseconds(50));
    leaving->reveal(FileURL("/folder/item"), note);
    impatient.reveal(FileURL("/later/item"), note);
    leaving.reset();
    ASSERT_TRUE(waitForOpened());
    EXPECT_EQ(opener.opened, QList<QByteArray>{"file:///later"});
}

TEST_F(RevealTest, OnlyAddressesAreOpened)
{
    EXPECT_TRUE(workspace.openAddress("x-test:page?Privacy_AllFiles"));
    EXPECT_EQ(opener.opened, QList<QByteArray>{"x-test:page?Privacy_AllFiles"});
    for (const char* text : {"", "no address", "/etc/passwd", "http://[broken", "x-test:a b"})
        EXPECT_FALSE(workspace.openAddress(text)) << text;
    EXPECT_EQ(opener.opened.size(), 1);
}

} // namespace

} // namespace brisalon::tests

#include "RevealTests.moc"
