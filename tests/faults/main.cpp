#include "support/TestHome.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    const brisalon::tests::TestHome home;
    ::qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
