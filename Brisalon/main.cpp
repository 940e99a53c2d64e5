#include "Brisalon/Interface/BrisalonApp.h"
#include "Brisalon/Platform/DesktopBundleInformation.h"
#include "Brisalon/Platform/DesktopFileAccess.h"
#include "Brisalon/Platform/DesktopWorkspace.h"
#include "Brisalon/Platform/SettingsDefaultsStore.h"
#include "BrisalonCore/OpenFileLimit.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    brisalon::raiseOpenFileLimit();
    QApplication application(argc, argv);
    brisalon::BrisalonApp::prepare();
    brisalon::SettingsDefaultsStore store;
    brisalon::DesktopWorkspace workspace;
    const brisalon::DesktopFileAccess fileAccess;
    const brisalon::DesktopBundleInformation bundle;
    brisalon::BrisalonApp brisalon({store, workspace, fileAccess, bundle});
    return brisalon.open() ? QApplication::exec() : 1;
}
