#include "WindowFixture.h"

#include "Brisalon/App/DisplayText.h"

#include <QTest>

#include <cstdlib>

namespace brisalon::tests {

namespace {

void failOnWarnings(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    // What the platform without a screen cannot do for windows is no fault of ours, nor is
    // the clock of Qt's animations, which complains on a very busy machine.
    if (type != QtDebugMsg && type != QtInfoMsg &&
        !message.startsWith("This plugin does not support") &&
        !message.startsWith("QUnifiedTimer::"))
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
        BrisalonApp::Dependencies{store, workspace, fileAccess, bundle, snapshots, gate.scan(),
                                  nullptr, [this] { return disks; }});
    window = app->open();
    ASSERT_NE(window, nullptr);
    driver.emplace(*window);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
}

void WindowFixture::startWithMap(const std::vector<File>& files)
{
    for (const File& file : files)
        home.file(file.path, file.size * mib);
    start();
    state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
}

bool WindowFixture::mapAppears()
{
    return waitFor([this] { return !app->state().isScanning(); }) && driver->waitForMap();
}

void WindowFixture::scan(const char* folder)
{
    state().startScan(FileURL(home.at(folder)));
    ASSERT_TRUE(waitFor([this] { return !app->state().isScanning(); }));
}

void WindowFixture::beginScan()
{
    gate.holdAfter(0);
    state().startScan(home.url());
}

void WindowFixture::endScan()
{
    gate.open();
    ASSERT_TRUE(mapAppears());
}

void WindowFixture::zoomIntoFirstOf(const FileNodeValue& folder)
{
    state().zoom(folder.at(folder->children()[0]));
    ASSERT_TRUE(driver->waitForMap());
}

QString WindowFixture::text(const QString& objectName) const
{
    return withoutBreaks(property(objectName, "text").toString());
}

QRectF WindowFixture::box(const QString& nameOrText, const QString& in) const
{
    driver->settle();
    EXPECT_NE(driver->find(nameOrText, in), nullptr) << "no " << nameOrText.toStdString();
    return driver->box(nameOrText, in);
}

void WindowFixture::resize(int width, int height)
{
    window->resize(width, height);
    ASSERT_TRUE(waitFor([&] { return box("inspectorColumn").right() == width; }));
}

void WindowFixture::clickOn(const QString& objectName, Qt::KeyboardModifiers modifiers)
{
    driver->settle();
    driver->click(driver->centre(objectName), modifiers);
}

void WindowFixture::openSheet(const char* entry, const char* view)
{
    clickOn("menuButton");
    ASSERT_TRUE(appears(entry));
    clickOn(entry);
    ASSERT_TRUE(appears(view));
    ASSERT_TRUE(waitFor([&] { return driver->find(view)->hasActiveFocus(); }));
}

void WindowFixture::drag(QPoint from, QPoint by)
{
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(window, from + by / 2);
    QTest::mouseMove(window, from + by);
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, from + by);
}

QPoint WindowFixture::block(const std::string& name) const
{
    EXPECT_TRUE(driver->waitForMap());
    const auto point = driver->block([&](const FileNode& node) { return node.name() == name; });
    EXPECT_TRUE(point) << "no block " << name;
    return point.value_or(QPoint());
}

QString WindowFixture::focused() const
{
    const QQuickItem* const item = window->activeFocusItem();
    return item ? item->objectName() : QString();
}

bool WindowFixture::isFocusOnMap() const
{
    const QQuickItem* const item = window->activeFocusItem();
    return item && item->inherits("brisalon::TreemapCanvas") && item->isVisible();
}

bool WindowFixture::isFocusSeen(const QString& objectName) const
{
    return waitFor([&] {
        if (!objectName.isEmpty())
            return focused() == objectName && property(objectName, "visualFocus").toBool();
        return isFocusOnMap() && window->activeFocusItem()->property("focusVisible").toBool();
    });
}

bool WindowFixture::reaches(const QString& objectName, int key)
{
    for (int presses = 0; presses < 60 && focused() != objectName; ++presses)
        press(key);
    return focused() == objectName;
}

} // namespace brisalon::tests
