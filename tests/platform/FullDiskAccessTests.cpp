#include "Brisalon/Services/FullDiskAccess.h"

#include "Brisalon/Platform/DesktopBundleInformation.h"
#include "Brisalon/Platform/DesktopFileAccess.h"
#include "Brisalon/Platform/HomeFolder.h"

#include "support/MemoryBundleInformation.h"
#include "support/MemoryFileAccess.h"
#include "support/MemoryWorkspace.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brisalon::tests {

namespace {

TEST(FullDiskAccess, TheFirstReadablePlaceSettlesIt)
{
    const std::string home = homeFolder().path();
    const std::vector<std::string> places{
        "/Library/Application Support/com.apple.TCC/TCC.db", home + "/Library/Safari/CloudTabs.db",
        home + "/Library/Safari/Bookmarks.plist", home + "/Library/Mail"};
    std::vector<std::string> asked;
    for (const std::string& readable : places) {
        asked.push_back(readable);
        MemoryFileAccess access;
        access.readablePaths = {readable, "/Library", home};
        EXPECT_TRUE(FullDiskAccess::isGranted(access)) << readable;
        EXPECT_EQ(access.asked, asked);
    }
    MemoryFileAccess access;
    EXPECT_FALSE(FullDiskAccess::isGranted(access));
    EXPECT_EQ(access.asked, places);
}

TEST(FullDiskAccess, OlderSettingsAreAskedForWhenTheNewerDoNotOpen)
{
    const std::string newer = "x-apple.systempreferences:com.apple.settings.PrivacySecurity."
                              "extension?Privacy_AllFiles";
    const std::string older =
        "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";
    MemoryFileAccess access;
    MemoryWorkspace workspace;
    FullDiskAccess::openSettings(access, workspace);
    EXPECT_EQ(workspace.addresses, std::vector{newer});

    workspace.addresses.clear();
    workspace.refusedAddresses = {newer, older};
    FullDiskAccess::openSettings(access, workspace);
    EXPECT_EQ(workspace.addresses, (std::vector{newer, older}));

    // A desktop that hides nothing needs no permission.
    access.isHiding = false;
    FullDiskAccess::openSettings(access, workspace);
    EXPECT_EQ(workspace.addresses.size(), 2U);
    EXPECT_TRUE(FullDiskAccess::isGranted(access));
    EXPECT_TRUE(access.asked.empty());
    EXPECT_TRUE(FullDiskAccess::isGranted(DesktopFileAccess()));
}

TEST(BundleInformation, OfTheRunningProgram)
{
    const DesktopBundleInformation bundle;
    EXPECT_EQ(bundle.url().lastPathComponent(), "brisalon_platform_tests");
    EXPECT_EQ(bundle.text(BundleInformation::versionKey), "1.0.0");
    EXPECT_TRUE(bundle.text(BundleInformation::buildKey));
    EXPECT_FALSE(bundle.text("CFBundleName"));
}

TEST(FileAccess, WhatTheDesktopLetsRead)
{
    const DesktopFileAccess access;
    const TemporaryTree tree;
    const FileURL item(tree.at("na\xff\nme"));
    EXPECT_FALSE(access.isReadable(item));
    EXPECT_FALSE(access.exists(item));
    tree.link("na\xff\nme", "missing");
    EXPECT_FALSE(access.exists(item)) << "what a link leads to counts";
    tree.file("missing");
    EXPECT_TRUE(access.isReadable(item));
    EXPECT_TRUE(access.isReadable(tree.url()));
    EXPECT_TRUE(access.exists(item));
    EXPECT_TRUE(access.exists(FileURL(tree.chain("", std::string(200, 'd'), 30))))
        << "longer than any path that the system takes";
}

} // namespace

} // namespace brisalon::tests
