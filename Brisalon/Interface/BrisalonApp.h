#pragma once

#include "Brisalon/App/AppState.h"
#include "Brisalon/Platform/DefaultsStore.h"
#include "Brisalon/Platform/QuickFolderPanel.h"

#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QVariantMap>

namespace brisalon {

/// The application: its one model and its one window, for the life of the process.
/// Also what tools and tests start, so that they see the program itself.
class BrisalonApp {
public:
    /// The names under which the desktop knows the application, the look that
    /// windows without a style of ours get, and the way that Qt Quick draws. Once,
    /// after the QGuiApplication was made and before a BrisalonApp.
    static void prepare();

    /// The store outlives the application. `scan` stands in for the scanner's, and
    /// `panel` for the desktop's folder panel, in tests.
    explicit BrisalonApp(DefaultsStore& store, ScanTask::Scan scan = {},
                         FolderPanel* panel = nullptr);
    ~BrisalonApp();
    BrisalonApp(const BrisalonApp&) = delete;
    BrisalonApp& operator=(const BrisalonApp&) = delete;

    AppState& state() { return state_; }

    /// Opens the window, with properties of its own set on it first ("width"), or
    /// says why it cannot and returns null. The window lives as long as this.
    QQuickWindow* open(const QVariantMap& properties = {});

private:
    QQmlApplicationEngine engine_;
    QuickFolderPanel folderPanel_;
    AppState state_;
    QPointer<QQuickWindow> window_;
};

} // namespace brisalon
