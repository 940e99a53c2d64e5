#include "Brisalon/Services/FullDiskAccess.h"

#include "Brisalon/Platform/DesktopBundleInformation.h"
#include "Brisalon/Platform/DesktopFileAccess.h"
#include "Brisalon/Platform/HomeFolder.h"

#include "TrashProbe.h"
#include "support/MemoryBundleInformation.h"
#include "support/MemoryFileAccess.h"
#include "support/MemoryWorkspace.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brisalon::tests {

namespace {

std::vector<std::string> hiddenPlaces()
{
    const std::string home = homeFolder().path();
    return {"/Library/Application Support/com.apple.TCC/TCC.db",
            home + "/Library/Safari/CloudTabs.db", home + "/Library/Safari/Bookmarks.plist",
            home + "/Library/Mail"};
}

TEST(FullDiskAccess, TheFirstReadablePlaceSettlesIt)
{
    const std::vector<std::string> places = hiddenPlaces();
    for (std::size_t readable = 0; readable < places.size(); ++readable) {
        MemoryFileAccess access;
        access.readablePaths = {places[readable], "/Library", homeFolder().path()};
        EXPECT_TRUE(FullDiskAccess::isGranted(access)) << places[readable];
        EXPECT_EQ(access.asked,
                  std::vector<std::string>(
                      places.begin(), places.begin() + static_cast<std::ptrdiff_t>(readable) + 1));
    }
    MemoryFileAccess access;
    EXPECT_FALSE(FullDiskAccess::isGranted(access));
    EXPECT_EQ(access.asked, places);
}

TEST(FullDiskAccess, ADesktopThatHidesNothingNeedsNoPermission)
{
    MemoryFileAccess access;
    access.isHiding = false;
    MemoryWorkspace workspace;
    EXPECT_TRUE(FullDiskAccess::isGranted(access));
    FullDiskAccess::openSettings(access, workspace);
    EXPECT_TRUE(access.asked.empty());
    EXPECT_TRUE(workspace.addresses.empty());
    EXPECT_TRUE(FullDiskAccess::isGranted(DesktopFileAccess()));
}

TEST(FullDiskAccess, OlderSettingsAreAskedForWhenTheNewerDoNotOpen)
{
    const std::string newer = "x-apple.systempreferences:com.apple.settings.PrivacySecurity."
                              "extension?Privacy_AllFiles";
    const std::string older =
        "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";
    const MemoryFileAccess access;
    MemoryWorkspace workspace;
    FullDiskAccess::openSettings(access, workspace);
    EXPECT_EQ(workspace.addresses, std::vector{newer});

    workspace.addresses.clear();
    workspace.refusedAddresses = {newer, older};
    FullDiskAccess::openSettings(access, workspace);
    EXPECT_EQ(workspace.addresses, (std::vector{newer, older}));
}

TEST(BundleInformation, OfTheRunningProgram)
{
    const DesktopBundleInformation bundle;
    EXPECT_EQ(bundle.url().lastPathComponent(), "brisalon_platform_tests");
    EXPECT_TRUE(exists(bundle.url().path()));
    EXPECT_EQ(bundle.text(BundleInformation::versionKey), "1.0.0");
    EXPECT_TRUE(bundle.text(BundleInformation::buildKey));
    EXPECT_FALSE(bundle.text("CFBundleName"));
}

TEST(FileAccess, WhatTheDesktopLetsRead)
{
    const DesktopFileAccess access;
    const FileURL home = homeFolder();
    const FileURL item = home.appendingPathComponent("na\xff\nme");
    EXPECT_FALSE(access.isReadable(item));
    writeText(item.path(), "");
    EXPECT_TRUE(access.isReadable(item));
    EXPECT_TRUE(access.isReadable(home));

    EXPECT_TRUE(access.exists(FileURL("/")));
    EXPECT_TRUE(access.exists(home));
    EXPECT_FALSE(access.exists(home.appendingPathComponent("missing/item")));
    const TemporaryTree tree;
    const std::string name(200, 'd');
    tree.chain(".", name, 30, 0);
    tree.link("link", "missing");
    FileURL deep = tree.url();
    for (int level = 0; level < 30; ++level)
        deep = deep.appendingPathComponent(name);
    EXPECT_TRUE(access.exists(deep)) << "longer than any path that the system takes";
    EXPECT_FALSE(access.exists(FileURL(tree.at("link")))) << "what a link leads to counts";
}

} // namespace

} // namespace brisalon::tests
