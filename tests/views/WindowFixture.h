#pragma once

#include "Rendered.h"

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

namespace brisalon::tests {

constexpr std::int64_t mib = 1024 * 1024;

/// The real window over a home folder of the test's own, driven by the events of a
/// mouse and a keyboard. Fails on any warning that the views print.
class WindowFixture : public ::testing::Test {
protected:
    WindowFixture();
    ~WindowFixture() override;

    /// Starts the program; what it works with may be set up before.
    void start();
    /// The same, and maps the home folder.
    void startWithMap();
    /// Waits until no scan runs and the map is painted; false when it does not come.
    bool mapAppears();

    AppState& state() { return app->state(); }
    QString levelName() const { return app->state().current().name(); }
    /// As it is read, without invisible marks.
    QString text(const char* objectName) const;
    bool isShown(const QString& objectName) const { return driver->find(objectName) != nullptr; }
    /// Waits until it is; false when that takes too long.
    bool appears(const QString& objectName) const;
    bool goes(const QString& objectName) const;
    /// The middle of the block of that name.
    QPoint block(const std::string& name) const;
    Rendered shown() const { return Rendered(*window); }
    /// Where an item is, and how far below another, once all is laid out.
    QRectF box(const QString& nameOrText);
    double below(const QString& upper, const QString& lower);
    void clickOn(const QString& objectName, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    void zoomIntoFirstOf(const FileNodeValue& folder);

    /// What has the keyboard.
    QString focused() const;
    /// Presses a key until the item has the keyboard; false if it never does.
    bool reaches(const QString& objectName, int key = Qt::Key_Tab);

    TemporaryTree home;
    MemoryDefaultsStore store;
    MemoryWorkspace workspace;
    /// Hides nothing: the permission is as good as granted, unless a test says
    /// otherwise.
    MemoryFileAccess fileAccess;
    MemoryBundleInformation bundle;
    SnapshotService snapshots{"/missing"};
    ScanGate gate;
    std::unique_ptr<BrisalonApp> app;
    QQuickWindow* window = nullptr;
    std::optional<WindowDriver> driver;

private:
    std::string realHome_;
};

} // namespace brisalon::tests
