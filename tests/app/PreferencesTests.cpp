#include "Brisalon/Platform/HomeFolder.h"
#include "Brisalon/Platform/SettingsDefaultsStore.h"
#include "Brisalon/Services/ScanTargetPreference.h"
#include "Brisalon/Services/UIPreferences.h"
#include "support/Files.h"
#include "support/TemporaryTree.h"

#include <QSettings>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <limits>

namespace brisalon::tests {

using Kind = ScanTargetPreference::Kind;

/// In the desktop's own store: what it makes of a value counts too.
class PreferencesTest : public ::testing::Test {
protected:
    PreferencesTest() { QSettings().clear(); }

    TemporaryTree tree;
    SettingsDefaultsStore store;
};

TEST_F(PreferencesTest, ATargetIsRememberedByWhatItIs)
{
    tree.folder("folder");
    tree.folder("caf\xe9, 100% @ home\n");
    tree.link("home", homeFolder().path());
    tree.link("root", "/");
    tree.link("link", tree.at("folder"));
    EXPECT_FALSE(ScanTargetPreference::isSaved(store));
    EXPECT_EQ(ScanTargetPreference::load(store), ScanTargetPreference{});

    const struct {
        const char* saved;
        const char* kindText;
        const char* folder; // the last one stays
        ScanTargetPreference loaded;
    } rows[] = {
        {"link", "custom", "folder", {Kind::customFolder, FileURL(tree.at("folder"))}},
        {"home", "home", "folder", {Kind::home, {}}},
        {"root", "thisMac", "folder", {Kind::thisMac, {}}},
        {"caf\xe9, 100% @ home\n",
         "custom",
         "caf\xe9, 100% @ home\n",
         {Kind::customFolder, FileURL(tree.at("caf\xe9, 100% @ home\n"))}},
    };
    for (const auto& row : rows) {
        ScanTargetPreference::save(FileURL(tree.at(row.saved)), store);
        EXPECT_TRUE(ScanTargetPreference::isSaved(store));
        EXPECT_EQ(ScanTargetPreference::load(store), row.loaded);
        EXPECT_EQ(store.text("lastScanTargetKind"), row.kindText);
        EXPECT_EQ(store.text("lastScanRootPath"), tree.at(row.folder));
    }
}

TEST_F(PreferencesTest, WhatCannotBeUnderstoodIsTheDefault)
{
    for (const char* const kind : {"Home", "custom", "", "THISMAC"}) {
        store.setText("lastScanTargetKind", kind);
        EXPECT_EQ(ScanTargetPreference::load(store).kind, Kind::home) << kind;
    }
    UIPreferences preferences(store);
    EXPECT_FALSE(preferences.hasSeenMapInteractionHint());
    preferences.setHasSeenMapInteractionHint();
    EXPECT_TRUE(preferences.hasSeenMapInteractionHint());

    const auto date = std::chrono::system_clock::now() + std::chrono::hours(24 * 7);
    preferences.setFDABannerDismissedUntil(date);
    ASSERT_TRUE(preferences.fdaBannerDismissedUntil());
    EXPECT_LT(abs(*preferences.fdaBannerDismissedUntil() - date), std::chrono::milliseconds(1));
    preferences.setFDABannerDismissedUntil(std::nullopt);
    EXPECT_FALSE(store.number("fdaBannerDismissedUntil"));
    store.setText("fdaBannerDismissedUntil", "tomorrow");
    EXPECT_FALSE(preferences.fdaBannerDismissedUntil());
    store.setNumber("fdaBannerDismissedUntil", std::nan(""));
    EXPECT_FALSE(preferences.fdaBannerDismissedUntil());
    for (const double far : {1e300, std::numeric_limits<double>::infinity(), 9.3e9}) {
        store.setNumber("fdaBannerDismissedUntil", far);
        EXPECT_GT(preferences.fdaBannerDismissedUntil(), std::chrono::system_clock::now()) << far;
        store.setNumber("fdaBannerDismissedUntil", -far);
        EXPECT_LT(preferences.fdaBannerDismissedUntil(), std::chrono::system_clock::now()) << far;
    }
}

TEST_F(PreferencesTest, ADamagedFileIsSurvivedAndMended)
{
    const std::string file = QSettings().fileName().toStdString();
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    const std::string damages[] = {
        std::string("\xff\x00\x01[[[\n=\n\x80", 9),
        "[General]\nlastScanTargetKind=cus\nhasSeenMapInteractionHint=maybe\n",
        "[General]\nlastScanTargetKind=custom\nlastScanRootPath=/a, /b\n",
        "[General]\nlastScanTargetKind=custom\nlastScanRootPath=@Variant(\\0\\0",
        "",
    };
    for (const std::string& damage : damages) {
        SCOPED_TRACE(damage);
        writeText(file, damage);
        SettingsDefaultsStore damaged;
        EXPECT_EQ(ScanTargetPreference::load(damaged).kind, Kind::home);
        EXPECT_FALSE(UIPreferences(damaged).hasSeenMapInteractionHint());
        ScanTargetPreference::save(tree.url(), damaged);
        EXPECT_EQ(ScanTargetPreference::load(damaged).folder, tree.url());
        EXPECT_NE(contents(file).find("lastScanTargetKind=custom"), std::string::npos);
        EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
    }
    // A file that cannot be written costs nothing but the memory of it.
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    SettingsDefaultsStore unwritable;
    ScanTargetPreference::save(tree.url(), unwritable);
    ScanTargetPreference::load(unwritable);
    EXPECT_TRUE(std::filesystem::is_directory(file));
    std::filesystem::remove(file);
}

} // namespace brisalon::tests
