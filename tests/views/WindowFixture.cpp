#include "WindowFixture.h"

#include "Brisalon/App/DisplayText.h"

#include <QTest>

#include <cstdlib>

namespace brisalon::tests {

namespace {

void failOnWarnings(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    // What the platform without a screen cannot do for windows is no fault of ours.
    if (type != QtDebugMsg && type != QtInfoMsg &&
        !message.startsWith("This plugin does not support"))
        ADD_FAILURE() << message.toStdString();
}

} // namespace

WindowFixture::WindowFixture() : realHome_(std::getenv("HOME"))
{
    ::setenv("HOME", home.path().c_str(), 1);
    fileAccess.isHiding = false;
    qInstallMessageHandler(failOnWarnings);
}

WindowFixture::~WindowFixture()
{
    app.reset();
    qInstallMessageHandler(nullptr);
    ::setenv("HOME", realHome_.c_str(), 1);
}

void WindowFixture::start()
{
    app = std::make_unique<BrisalonApp>(
        BrisalonApp::Dependencies{store, workspace, fileAccess, bundle, snapshots, gate.scan()});
    window = app->open();
    ASSERT_NE(window, nullptr);
    driver.emplace(*window);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
}

void WindowFixture::startWithMap()
{
    start();
    state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
}

bool WindowFixture::mapAppears()
{
    return WindowDriver::waitFor([this] { return !app->state().isScanning(); }) &&
           driver->waitForMap();
}

QString WindowFixture::text(const char* objectName) const
{
    return withoutBreaks(driver->property(objectName, "text").toString());
}

bool WindowFixture::appears(const QString& objectName) const
{
    return WindowDriver::waitFor([&] { return isShown(objectName); });
}

bool WindowFixture::goes(const QString& objectName) const
{
    return WindowDriver::waitFor([&] { return !isShown(objectName); });
}

void WindowFixture::zoomIntoFirstOf(const FileNodeValue& folder)
{
    state().zoom(folder.at(folder->children()[0]));
}

QPoint WindowFixture::block(const std::string& name) const
{
    const auto point = driver->block([&](const FileNode& node) { return node.name() == name; });
    EXPECT_TRUE(point) << "no block " << name;
    return point.value_or(QPoint());
}

QRectF WindowFixture::box(const QString& nameOrText)
{
    driver->settle();
    return shown().box(nameOrText);
}

double WindowFixture::below(const QString& upper, const QString& lower)
{
    driver->settle();
    return shown().below(upper, lower);
}

void WindowFixture::clickOn(const QString& objectName, Qt::KeyboardModifiers modifiers)
{
    driver->settle();
    driver->click(driver->centre(objectName), modifiers);
}

QString WindowFixture::focused() const
{
    const QQuickItem* const item = window->activeFocusItem();
    return item ? item->objectName() : QString();
}

bool WindowFixture::reaches(const QString& objectName, int key)
{
    for (int presses = 0; presses < 60 && focused() != objectName; ++presses)
        driver->press(key);
    return focused() == objectName;
}

} // namespace brisalon::tests
