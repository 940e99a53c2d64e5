#pragma once

#include "Brisalon/Interface/BrisalonApp.h"
#include "support/MemoryBundleInformation.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileAccess.h"
#include "support/MemoryWorkspace.h"
#include "support/ScanGate.h"
#include "support/TemporaryTree.h"
#include "support/WindowDriver.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisalon::tests {

/// The real window over a home folder of the test's own, driven by the events of a
/// mouse and a keyboard. Fails on any warning that the views print. Items and texts
/// count only while they are visible; of several the one on top does. Lengths are in
/// points, places in the window.
class WindowFixture : public ::testing::Test {
protected:
    /// A file of the home folder, and its mebibytes.
    struct File {
        std::string path;
        int size;
    };

    WindowFixture();
    ~WindowFixture() override;

    /// Starts the program; what it works with may be set up before.
    void start();
    /// The same, and maps the home folder, with those files in it.
    void startWithMap(const std::vector<File>& files = {});
    /// Waits until no scan runs and the map is painted; false when it does not come.
    bool mapAppears();
    /// Scans a folder of the home folder to the end, whatever that is.
    void scan(const char* folder);
    /// Begins a scan of the home folder that goes on until the gate opens.
    void beginScan();
    /// Opens the gate and waits for the map.
    void endScan();

    AppState& state() { return app->state(); }
    QString levelName() const { return app->state().current().name(); }
    void zoomIntoFirstOf(const FileNodeValue& folder);

    QVariant property(const QString& item, const char* name) const
    {
        return driver->property(item, name);
    }
    QColor color(const QString& item) const { return property(item, "color").value<QColor>(); }
    /// As it is read, without invisible marks.
    QString text(const QString& objectName) const;
    bool isShown(const QString& objectName) const { return driver->find(objectName) != nullptr; }
    /// Waits until it is; false when that takes too long.
    bool appears(const QString& objectName) const
    {
        return waitFor([&] { return isShown(objectName); });
    }
    bool goes(const QString& objectName) const
    {
        return waitFor([&] { return !isShown(objectName); });
    }
    static bool waitFor(const std::function<bool()>& condition)
    {
        return WindowDriver::waitFor(condition);
    }

    /// Where the item of that name is, or else that text, once all is laid out, or the
    /// item in that one; nowhere without it, which fails the test.
    QRectF box(const QString& nameOrText, const QString& in = {}) const;
    /// How far one begins below the end of the other.
    double below(const QString& upper, const QString& lower) const
    {
        return box(lower).top() - box(upper).bottom();
    }
    /// Resizes the window, and waits until its content has followed.
    void resize(int width, int height);

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        driver->press(key, modifiers);
    }
    void clickOn(const QString& objectName, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Opens a sheet as a user does it, by its entry of the menu.
    void openSheet(const char* entry, const char* view);
    /// Presses at a point, moves so far in two steps, and releases.
    void drag(QPoint from, QPoint by);
    /// The middle of the block of that name, once the map is painted.
    QPoint block(const std::string& name) const;
    void clickBlock(const std::string& name) { driver->click(block(name)); }
    void enterBlock(const std::string& name) { driver->doubleClick(block(name)); }

    /// What has the keyboard.
    QString focused() const;
    bool isFocusOnMap() const;
    /// Waits until the item has the keyboard, or without one the map, and shows it.
    bool isFocusSeen(const QString& objectName = {}) const;
    /// Presses a key until the item has the keyboard; false if it never does.
    bool reaches(const QString& objectName, int key = Qt::Key_Tab);

    TemporaryTree home;
    /// Where snapshot tools are put.
    TemporaryTree tools;
    MemoryDefaultsStore store;
    MemoryWorkspace workspace;
    /// Hides nothing: the permission is as good as granted, unless a test says
    /// otherwise.
    MemoryFileAccess fileAccess;
    MemoryBundleInformation bundle;
    std::vector<LocalVolume> disks;
    SnapshotService snapshots{"/missing"};
    ScanGate gate;
    std::unique_ptr<BrisalonApp> app;
    QQuickWindow* window = nullptr;
    std::optional<WindowDriver> driver;

private:
    std::string realHome_;
};

} // namespace brisalon::tests
