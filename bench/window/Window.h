#pragma once

#include "Brisalon/Interface/BrisalonApp.h"
#include "support/MemoryBundleInformation.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileAccess.h"
#include "support/MemoryWorkspace.h"
#include "support/WindowDriver.h"

#include <QApplication>
#include <QTest>

#include <cstdlib>
#include <optional>
#include <utility>

namespace brisalon::bench {

/// The program with its window, off-screen unless the environment says otherwise. Ends
/// the process when the window cannot be opened.
class Window {
public:
    Window(int& argc, char** argv, ScanTask::Scan scan = {}, Workspace* workspace = nullptr)
        : application_(prepared(argc), argv)
    {
        BrisalonApp::prepare();
        fileAccess_.isHiding = false;
        app_.emplace(BrisalonApp::Dependencies{store_, workspace ? *workspace : workspace_,
                                               fileAccess_, bundle_, SnapshotService("/missing"),
                                               std::move(scan)});
        QQuickWindow* const window = app_->open();
        if (!window || !QTest::qWaitForWindowExposed(window))
            std::exit(EXIT_FAILURE);
        driver_.emplace(*window);
    }

    AppState& state() { return app_->state(); }
    WindowDriver& driver() { return *driver_; }

    /// Scans, and waits for the map.
    void scan(const FileURL& root)
    {
        state().startScan(root);
        if (!WindowDriver::waitFor([this] { return !state().isScanning(); }) ||
            !driver().waitForMap())
            std::exit(EXIT_FAILURE);
    }

private:
    static int& prepared(int& argc)
    {
        for (const auto& [name, value] :
             {std::pair{"QT_QPA_PLATFORM", "offscreen"}, {"QT_QUICK_BACKEND", "software"}}) {
            if (!qEnvironmentVariableIsSet(name))
                qputenv(name, value);
        }
        return argc;
    }

    QApplication application_;
    MemoryDefaultsStore store_;
    MemoryWorkspace workspace_;
    MemoryFileAccess fileAccess_;
    MemoryBundleInformation bundle_;
    std::optional<BrisalonApp> app_;
    std::optional<WindowDriver> driver_;
};

} // namespace brisalon::bench
