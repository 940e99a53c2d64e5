#include "Brisalon/Interface/BrisalonApp.h"

#include "Brisalon/Platform/GraphicsProcessor.h"
#include "Brisalon/Theme/Theme.h"

#include <QGuiApplication>
#include <QPalette>
#include <QQuickStyle>

#include <utility>

namespace brisalon {

namespace {

/// The dark look for what is not drawn by this program's own views: the folder
/// panel where the desktop has none.
QPalette darkPalette()
{
    QPalette palette(Theme::elevated(), Theme::panel());
    palette.setColor(QPalette::Base, Theme::well());
    palette.setColor(QPalette::AlternateBase, Theme::panel());
    palette.setColor(QPalette::Highlight, Theme::accent());
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, Qt::white);
        palette.setColor(QPalette::Disabled, role, Theme::muted());
    }
    return palette;
}

} // namespace

void BrisalonApp::prepare()
{
    QCoreApplication::setOrganizationName("Brisalon");
    QCoreApplication::setApplicationName("Brisalon");
    QGuiApplication::setDesktopFileName("brisalon");
    QGuiApplication::setPalette(darkPalette());
    QGuiApplication::setFont(Theme::system(Theme::body()));
    QQuickStyle::setStyle("Basic");
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    chooseGraphics();
}

BrisalonApp::BrisalonApp(DefaultsStore& store, ScanTask::Scan scan, FolderPanel* panel)
    : folderPanel_(engine_),
      state_(store, panel ? *panel : folderPanel_, std::move(scan))
{
    engine_.addImportPath("qrc:/qt/qml");
}

BrisalonApp::~BrisalonApp()
{
    // The views read the model to the last.
    delete window_;
}

QQuickWindow* BrisalonApp::open(const QVariantMap& properties)
{
    QVariantMap initial = properties;
    initial.insert("appState", QVariant::fromValue(&state_));
    engine_.setInitialProperties(initial);
    engine_.load(QUrl("qrc:/qt/qml/Brisalon/Interface/BrisalonWindow.qml"));
    if (!engine_.rootObjects().isEmpty())
        window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
    return window_;
}

} // namespace brisalon
