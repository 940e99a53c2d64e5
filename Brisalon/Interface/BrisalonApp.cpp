#include "Brisalon/Interface/BrisalonApp.h"

#include "Brisalon/Platform/GraphicsProcessor.h"
#include "Brisalon/Theme/Theme.h"

#include <QGuiApplication>
#include <QIcon>
#include <QQuickStyle>

#include <utility>

namespace brisalon {

void BrisalonApp::prepare()
{
    QCoreApplication::setOrganizationName("Brisalon");
    QCoreApplication::setApplicationName("Brisalon");
    QGuiApplication::setDesktopFileName("brisalon");
    QGuiApplication::setWindowIcon(QIcon(":/qt/qml/Brisalon/Theme/LogoMark.svg"));
    QGuiApplication::setFont(Theme::system(Theme::body()));
    QQuickStyle::setStyle("Fusion");
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    chooseGraphics();
}

BrisalonApp::BrisalonApp(Surroundings surroundings)
    : folderPanel_(engine_),
      product_(surroundings.bundle, surroundings.workspace),
      state_({
          .defaults = surroundings.defaults,
          .folderPanel = surroundings.folderPanel ? *surroundings.folderPanel : folderPanel_,
          .workspace = surroundings.workspace,
          .fileAccess = surroundings.fileAccess,
          .bundle = surroundings.bundle,
          .snapshots = std::move(surroundings.snapshots),
          .scan = std::move(surroundings.scan),
      })
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
    initial.insert("product", QVariant::fromValue(&product_));
    engine_.setInitialProperties(initial);
    engine_.load(QUrl("qrc:/qt/qml/Brisalon/Interface/BrisalonWindow.qml"));
    if (!engine_.rootObjects().isEmpty())
        window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
    return window_;
}

} // namespace brisalon
