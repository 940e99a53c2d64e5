#include "Brisalon/Interface/BrisalonApp.h"

#include "Brisalon/Platform/GraphicsProcessor.h"
#include "Brisalon/Theme/LogoMark.h"
#include "Brisalon/Theme/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QSGRendererInterface>

#include <utility>

namespace brisalon {

namespace {

/// For what is not drawn by the program's own views: the folder panel where the
/// desktop has none.
QPalette darkPalette()
{
    QPalette palette(Theme::elevated(), Theme::panel());
    palette.setColor(QPalette::Base, Theme::well());
    palette.setColor(QPalette::Highlight, Theme::accent());
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, Theme::muted());
    return palette;
}

/// Makes Qt Quick draw in software where that is faster, unless the user's
/// environment has already chosen.
void chooseGraphics()
{
    const bool isChosen = qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
                          qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
    if (!isChosen && !hasGraphicsProcessor())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace

void BrisalonApp::prepare()
{
    QCoreApplication::setOrganizationName("Brisalon");
    QCoreApplication::setApplicationName("Brisalon");
    QApplication::setDesktopFileName("brisalon");
    QApplication::setWindowIcon(LogoMark::icon());
    QApplication::setFont(Theme::system(Theme::body()));
    QApplication::setPalette(darkPalette());
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    chooseGraphics();
}

BrisalonApp::BrisalonApp(Dependencies dependencies)
    : product_(dependencies.bundle, dependencies.workspace),
      state_({
          .defaults = dependencies.defaults,
          .folderPanel = dependencies.folderPanel ? *dependencies.folderPanel : folderPanel_,
          .workspace = dependencies.workspace,
          .fileAccess = dependencies.fileAccess,
          .bundle = dependencies.bundle,
          .snapshots = std::move(dependencies.snapshots),
          .scan = std::move(dependencies.scan),
          .disks = std::move(dependencies.disks),
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
    initial.insert("commands", QVariant::fromValue(&commands_));
    initial.insert("product", QVariant::fromValue(&product_));
    engine_.setInitialProperties(initial);
    engine_.load(QUrl("qrc:/qt/qml/Brisalon/Interface/BrisalonWindow.qml"));
    if (!engine_.rootObjects().isEmpty())
        window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
    return window_;
}

} // namespace brisalon
