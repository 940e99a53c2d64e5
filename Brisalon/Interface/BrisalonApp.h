#pragma once

#include "Brisalon/App/AppState.h"
#include "Brisalon/App/Commands.h"
#include "Brisalon/Interface/ProductInformation.h"
#include "Brisalon/Platform/DesktopFolderPanel.h"

#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QVariantMap>

namespace brisalon {

/// The application: its one model and its one window, for the life of the process.
/// Also what tools and tests start, so that they see the program itself.
class BrisalonApp {
public:
    /// The names under which the desktop knows the application, its font, and the
    /// way that Qt Quick draws. Once, after the QApplication was made and before
    /// a BrisalonApp.
    static void prepare();

    /// What the application works with; all of it outlives the application. The
    /// optional parts stand in for the scanner's and the desktop's in tests.
    struct Dependencies {
        DefaultsStore& defaults;
        Workspace& workspace;
        const FileAccess& fileAccess;
        const BundleInformation& bundle;
        SnapshotService snapshots = {};
        ScanTask::Scan scan = {};
        FolderPanel* folderPanel = nullptr;
        std::function<std::vector<LocalVolume>()> disks = LocalVolume::mounted;
    };

    explicit BrisalonApp(Dependencies dependencies);
    ~BrisalonApp();
    BrisalonApp(const BrisalonApp&) = delete;
    BrisalonApp& operator=(const BrisalonApp&) = delete;

    AppState& state() { return state_; }

    /// Opens the window, with properties of its own set on it first ("width"), or
    /// says why it cannot and returns null. The window lives as long as this.
    QQuickWindow* open(const QVariantMap& properties = {});

private:
    QQmlApplicationEngine engine_;
    DesktopFolderPanel folderPanel_;
    ProductInformation product_;
    AppState state_;
    Commands commands_{state_};
    QPointer<QQuickWindow> window_;
};

} // namespace brisalon
