#include "Brisalon/Platform/HomeFolder.h"
#include "Brisalon/Platform/SettingsDefaultsStore.h"
#include "Brisalon/Services/ScanTargetPreference.h"
#include "Brisalon/Services/UIPreferences.h"
#include "support/MemoryDefaultsStore.h"
#include "support/TemporaryTree.h"

#include <QSettings>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

namespace brisalon::tests {

using Kind = ScanTargetPreference::Kind;

/// Every test on both stores: what the desktop's makes of a value counts too.
template <typename Store>
class PreferencesTest : public ::testing::Test {
protected:
    PreferencesTest() { QSettings().clear(); }

    Store store;
};

using Stores = ::testing::Types<MemoryDefaultsStore, SettingsDefaultsStore>;
TYPED_TEST_SUITE(PreferencesTest, Stores);

TYPED_TEST(PreferencesTest, ATargetIsRememberedByWhatItIs)
{
    const TemporaryTree tree;
    tree.folder("folder");
    tree.link("home", homeFolder().path());
    tree.link("root", "/");
    tree.link("link", tree.at("folder"));
    auto& defaults = this->store;

    EXPECT_FALSE(ScanTargetPreference::isSaved(defaults));
    EXPECT_EQ(ScanTargetPreference::load(defaults), ScanTargetPreference{});

    ScanTargetPreference::save(FileURL(tree.at("link")), defaults);
    EXPECT_TRUE(ScanTargetPreference::isSaved(defaults));
    EXPECT_EQ(defaults.text("lastScanTargetKind"), "custom");
    EXPECT_EQ(defaults.text("lastScanRootPath"), tree.at("folder"));
    EXPECT_EQ(ScanTargetPreference::load(defaults),
              (ScanTargetPreference{Kind::customFolder, FileURL(tree.at("folder"))}));

    for (const auto& [link, kind, text] :
         {std::tuple{"home", Kind::home, "home"}, std::tuple{"root", Kind::thisMac, "thisMac"}}) {
        ScanTargetPreference::save(FileURL(tree.at(link)), defaults);
        EXPECT_EQ(ScanTargetPreference::load(defaults), (ScanTargetPreference{kind, {}}));
        EXPECT_EQ(defaults.text("lastScanTargetKind"), text);
        EXPECT_EQ(defaults.text("lastScanRootPath"), tree.at("folder")) << "the last folder stays";
    }
}

TYPED_TEST(PreferencesTest, WhatCannotBeUnderstoodIsHome)
{
    auto& defaults = this->store;
    for (const char* const kind : {"Home", "custom", "", "THISMAC"}) {
        defaults.setText("lastScanTargetKind", kind);
        EXPECT_EQ(ScanTargetPreference::load(defaults).kind, Kind::home) << kind;
    }
    defaults.setText("fdaBannerDismissedUntil", "tomorrow");
    EXPECT_FALSE(UIPreferences(defaults).fdaBannerDismissedUntil());
    const UIPreferences preferences(defaults);
    defaults.setNumber("fdaBannerDismissedUntil", std::nan(""));
    EXPECT_FALSE(preferences.fdaBannerDismissedUntil());
    for (const double far : {1e300, std::numeric_limits<double>::infinity(), 9.3e9}) {
        defaults.setNumber("fdaBannerDismissedUntil", far);
        EXPECT_GT(preferences.fdaBannerDismissedUntil(), std::chrono::system_clock::now()) << far;
        defaults.setNumber("fdaBannerDismissedUntil", -far);
        EXPECT_LT(preferences.fdaBannerDismissedUntil(), std::chrono::system_clock::now()) << far;
    }
}

TEST(SettingsDefaultsStore, ADamagedFileIsSurvivedAndMended)
{
    const TemporaryTree tree;
    const std::string file = QSettings().fileName().toStdString();
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    const std::string contents[] = {
        std::string("\xff\x00\x01[[[\n=\n\x80", 9),
        "[General]\nlastScanTargetKind=cus\nhasSeenMapInteractionHint=maybe\n",
        "[General]\nlastScanTargetKind=custom\nlastScanRootPath=/a, /b\n",
        "[General]\nlastScanTargetKind=custom\nlastScanRootPath=@Variant(\\0\\0",
        "",
    };
    for (const std::string& damage : contents) {
        SCOPED_TRACE(damage);
        std::ofstream(file, std::ios::binary) << damage;
        SettingsDefaultsStore store;
        EXPECT_EQ(ScanTargetPreference::load(store).kind, Kind::home);
        EXPECT_FALSE(UIPreferences(store).hasSeenMapInteractionHint());
        ScanTargetPreference::save(tree.url(), store);
        EXPECT_EQ(ScanTargetPreference::load(store).folder, tree.url());
        std::ifstream stream(file);
        const std::string written{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_NE(written.find("lastScanTargetKind=custom"), std::string::npos);
        EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
    }
    // A file that cannot be written costs nothing but the memory of it.
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    SettingsDefaultsStore store;
    ScanTargetPreference::save(tree.url(), store);
    ScanTargetPreference::load(store);
    EXPECT_TRUE(std::filesystem::is_directory(file));
    std::filesystem::remove(file);
}

TYPED_TEST(PreferencesTest, AFolderWhoseNameIsNoTextComesBackExactly)
{
    const TemporaryTree tree;
    tree.folder("caf\xe9, 100% @ home\n");
    const FileURL folder(tree.at("caf\xe9, 100% @ home\n"));
    ScanTargetPreference::save(folder, this->store);
    EXPECT_EQ(ScanTargetPreference::load(this->store).folder, folder);
}

TYPED_TEST(PreferencesTest, SmallThingsOfTheInterface)
{
    using namespace std::chrono;
    UIPreferences preferences(this->store);
    EXPECT_FALSE(preferences.hasSeenMapInteractionHint());
    preferences.setHasSeenMapInteractionHint();
    EXPECT_TRUE(preferences.hasSeenMapInteractionHint());
    EXPECT_EQ(this->store.boolean("hasSeenMapInteractionHint"), true);

    EXPECT_FALSE(preferences.fdaBannerDismissedUntil());
    const auto date = system_clock::now() + hours(24 * 7);
    preferences.setFDABannerDismissedUntil(date);
    ASSERT_TRUE(preferences.fdaBannerDismissedUntil());
    EXPECT_LT(abs(*preferences.fdaBannerDismissedUntil() - date), milliseconds(1));
    preferences.setFDABannerDismissedUntil(std::nullopt);
    EXPECT_FALSE(preferences.fdaBannerDismissedUntil());
    EXPECT_FALSE(this->store.number("fdaBannerDismissedUntil"));
}

} // namespace brisalon::tests
