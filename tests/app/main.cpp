#include "support/TestHome.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    const brisalon::tests::TestHome home;
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName("Brisalon");
    QCoreApplication::setApplicationName("Brisalon");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
