#include "Brisalon/Interface/BrisalonApp.h"
#include "Brisalon/Platform/SettingsDefaultsStore.h"

#include <QGuiApplication>

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    brisalon::BrisalonApp::prepare();
    brisalon::SettingsDefaultsStore store;
    brisalon::BrisalonApp brisalon(store);
    return brisalon.open() ? QGuiApplication::exec() : 1;
}
