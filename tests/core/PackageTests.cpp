#include "host/Package.h"

#include <gtest/gtest.h>

#include <string>

using brisalon::host::isPackageName;

namespace {

TEST(Package, ExtensionsInAnyLetterCaseBehindAStem)
{
    for (const char* name : {"Mail.app", "MAIL.APP", "a.b.bundle", "Photos Library.photoslibrary",
                             "App.xcarchive", "disk.SparseBundle", "..app", "\xff.app"})
        EXPECT_TRUE(isPackageName(name)) << name;
    for (const char* name : {"", ".", "..", "app", ".app", "Mail.app.old", "Mail.ap", "Mail.apps",
                             "Mail.", "Mail.app ", "Mail.app\xff", "Mail app"})
        EXPECT_FALSE(isPackageName(name)) << name;
    EXPECT_FALSE(isPackageName("x." + std::string(4096, 'a')));
}

} // namespace
