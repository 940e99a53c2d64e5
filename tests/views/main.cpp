#include "support/TestHome.h"

#include "Brisalon/Interface/BrisalonApp.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    ::testing::InitGoogleTest(&argc, argv);
    const brisalon::tests::TestHome home;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argc, argv);
    brisalon::BrisalonApp::prepare();
    return RUN_ALL_TESTS();
}
