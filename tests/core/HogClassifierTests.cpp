#include "BrisalonCore/HogClassifier.h"

#include "analysis/HogTrail.h"
#include "support/PlainClassifier.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <list>
#include <random>
#include <span>
#include <string>
#include <tuple>
#include <vector>

using namespace brisalon;
using namespace brisalon::tests;
using detail::HogAutomaton;
using detail::HogTest;
using detail::HogTrail;

namespace {

using enum HogKind;
using enum HogTest::Where;

TEST(HogClassifier, KnownPlaces)
{
    const std::pair<const char*, HogKind> samples[] = {
        {"/Users/a/VMs/Docker.raw", docker},
        {"/Users/a/VMs/docker.raw.bak", none},
        {"/Users/a/Docker.raw.qcow2", docker},
        {"/Users/a/Library/Caches/com.docker.docker/x", docker},
        {"/Users/a/Library/Group.com.dockers/node_modules", docker},
        {"/Users/a/proj/node_modules", nodeModules},
        {"/Users/a/MobileSync/Backup/node_modules", nodeModules},
        {"/Users/a/proj/node_modules/lib/index.js", none},
        {"/Users/a/proj/node_modules/.small-files-aggregate", none},
        {"/Users/a/Library/Caches/MobileSync/Backup/abc", iosBackup},
        {"/Users/a/Library/Caches/.LocalSnapshots/x", timeMachineSnapshot},
        {"/Users/a/Library/Caches/com.apple.TimeMachine.x/y", timeMachineSnapshot},
        {"/Users/a/Library/Caches/Developer/Xcode/DerivedData/x", xcodeDerivedData},
        {"/Users/a/Library/Developer/Xcode/Archives/2024-01-01/App.xcarchive", xcodeDerivedData},
        {"/Users/a/Library/Caches/Developer/CoreSimulator/x", xcodeSimulators},
        {"/Users/a/Library/Developer/Xcode/iOS DeviceSupport/17.0", xcodeSimulators},
        {"/Users/a/Library/Caches/Homebrew/downloads/f.tar.gz", homebrew},
        {"/Library/Caches/x/homebrew/Caches/y", homebrew},
        {"/Users/a/Library/CachesOld/z", caches},
        {"/Users/a/Library/Caches/Library/Logs", caches},
        {"/Users/a/Library/Caches/.small-files-aggregate", caches},
        {"/Users/a/Library/Other/Caches", none},
        {"/Users/a/Library/Logs/.Trash/x", logs},
        {"/Users/a/.Trash/Setup.dmg", trash},
        {"/Volumes/x/.Trashes/501/y", trash},
        {"/Users/a/Library/Trashes/x.pkg", trash},
        {"/Users/a/Downloads/Setup.DMG", installer},
        {"/home/a/.cache/x.dmg", installer},
        {"/home/a/.cache/x.pkg", installer},

        {"/var/lib/docker/overlay2/x/var/log", docker},
        {"/var/lib/docker.old", none},
        {"/var/lib/containerd", docker},
        {"/var/lib/containers/storage", docker},
        {"/home/a/.local/share/containers/cache", docker},
        {"/home/a/.local/share/docker", docker},
        {"/.snapshots", timeMachineSnapshot},
        {"/.snapshots/1/snapshot/var/log/x", timeMachineSnapshot},
        {"/timeshift/snapshots/2024/localhost/home/a/.cache", timeMachineSnapshot},
        {"/home/a/.cache/Homebrew", homebrew},
        {"/home/a/.local/share/Trash/files/x.deb", trash},
        {"/home/a/.local/share/Trash/files/.cache", trash},
        {"/home/a/.cache", caches},
        {"/home/a/.cache/x.iso", caches},
        {"/home/a/.cached", none},
        {"/home/a/x.cache", none},
        {"/var/cache", caches},
        {"/var/cache//x", caches},
        {"/var/lib/apt/lists/x", caches},
        {"/home/a/.thumbnails/large", caches},
        {"/home/a/.pip/cache", caches},
        {"/home/a/.npm/_cacache/index-v5", caches},
        {"/home/a/.npm/_logs", none},
        {"/home/a/.local/share/pnpm/store/v3", caches},
        {"/mnt/data/.pnpm-store/v3", caches},
        {"/home/a/site/.yarn/cache/x.zip", caches},
        {"/home/a/.yarn/berry/cache", caches},
        {"/home/a/.bun/install/cache", caches},
        {"/home/a/.bun/bin/bun", none},
        {"/home/a/.cargo/registry/src", caches},
        {"/home/a/.cargo/git", caches},
        {"/home/a/.cargo/bin/x", none},
        {"/home/a/go/pkg/mod/cache", caches},
        {"/home/a/go/pkg/models", none},
        {"/home/a/.gradle/caches", caches},
        {"/home/a/.gradle/wrapper/dists", caches},
        {"/home/a/.m2/repository", caches},
        {"/home/a/.nuget/packages", caches},
        {"/home/a/anaconda3/pkgs", caches},
        {"/home/a/miniconda3/pkgs/x", caches},
        {"/home/a/miniconda3/envs/x", none},
        {"/home/a/miniforge3/pkgs", caches},
        {"/opt/conda/pkgs", caches},
        {"/home/a/.conda/pkgs", caches},
        {"/home/a/.ccache/0/1", caches},
        {"/home/a/.var/app/org.x.Y/cache/z", caches},
        {"/home/a/.var/app/cache", none},
        {"/home/a/.var/app/org.x.Y/data/cache", none},
        {"/home/a/.config/Code/Cache", caches},
        {"/home/a/.config/chromium/Default/Code Cache/js", caches},
        {"/home/a/.config/cache", caches},
        {"/home/a/.config/x/Default/GPUCache", caches},
        {"/home/a/.config/x/Default/Service Worker/CacheStorage/y", caches},
        {"/home/a/.config/x/CacheStore", none},
        {"/home/a/x/cache", none},
        {"/var/log", logs},
        {"/mnt/disk/var/log/journal/x", logs},
        {"/src/var/logout.c", none},
        {"/run/log/journal", logs},
        {"/var/crash/x.crash", logs},
        {"/var/lib/systemd/coredump/x.zst", logs},
        {"/var/lib/snapd/snaps/core_1.snap", none},
        {"/home/a/x.snap", installer},
        {"/home/a/x.ISO", installer},
        {"/home/a/x.deb", installer},
        {"/home/a/x.rpm", installer},
        {"/home/a/x.AppImage", installer},
        {"/home/a/x.flatpakref", installer},

        {"/x.snap", installer},
        {".dmg", installer},
        {"node_modules", nodeModules},
        {".Trash/x", none},
        {".cache/x", none},
        {"library/caches/x", none},
        {"x/library/caches", caches},
        {"/library//caches/x", none},
        {"//library/caches", caches},
        {"/", none},
        {"", none},
    };
    for (const auto& [path, kind] : samples)
        EXPECT_EQ(HogClassifier::classify(FileURL(path)), kind) << path;
}

TEST(HogClassifier, ATaggedFolderHoldsACacheUnlessItsPlaceSaysMore)
{
    const std::tuple<const char*, const char*, HogKind> samples[] = {
        {"/src/thing", "target", caches},
        {"/src/thing/target", "x.deb", caches},
        {"/src/thing/target", "x.dmg", installer},
        {"/src/thing", "node_modules", nodeModules},
        {"/var/log", "x", logs},
        {"/var/lib/snapd", "x.snap", caches},
    };
    for (const auto& [folder, name, kind] : samples) {
        EXPECT_EQ(HogTrail::of(folder).tagged().classify(name), kind) << folder << ' ' << name;
        EXPECT_EQ(HogTrail::of(folder).tagged().entering("a").entering("b").classify("c"),
                  HogTrail::of(folder).tagged().classify("c"))
            << folder;
    }
}

TEST(HogClassifier, TheRootsTrailIsThatOfNoName)
{
    EXPECT_EQ(HogTrail::of("/").classify(".Trash"), trash);
    EXPECT_EQ(HogTrail::of("/").entering("Library").classify("Logs"), logs);
    EXPECT_EQ(HogTrail::of("").classify(".Trash"), trash);
}

class AnyTests {
public:
    /// Tests that are much alike, so that many of them hold for one path.
    std::vector<HogTest> tests()
    {
        texts_.clear();
        std::vector<HogTest> tests;
        while (tests.size() < 8) {
            const auto where = static_cast<HogTest::Where>(pick(5));
            std::string& text = texts_.emplace_back();
            if (where == nameIs || where == nameEndsWith)
                text = name();
            else if (where != tagged)
                for (auto parts = 1 + pick(4); parts > 0; --parts)
                    text.append("/").append(pick(4) == 0 ? std::string(1 + pick(2), '*') : name());
            try {
                tests.emplace_back(where, text, allHogKinds[pick(allHogKinds.size())]);
            } catch (const char*) {
                // refused
            }
        }
        return tests;
    }

    std::string path(std::span<const HogTest> tests)
    {
        std::array<std::uint8_t, 12> bytes;
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random_());
        return pathOf(bytes, tests);
    }

    std::size_t pick(std::size_t count) { return random_() % count; }

private:
    std::string name()
    {
        std::string name;
        for (auto size = 2 + pick(2); size > 0; --size)
            name += "kki."[pick(4)];
        return name;
    }

    std::list<std::string> texts_;
    std::mt19937 random_{3};
};

TEST(HogAutomaton, WhateverTheTestsAgreesWithTryingEachOnTheWholePath)
{
    AnyTests any;
    for (int round = 0; round < 1000; ++round) {
        const auto tests = any.tests();
        const std::span all(tests);
        const HogAutomaton automaton(all.first(4), all.subspan(4));
        for (int i = 0; i < 200; ++i) {
            const std::string path = any.path(tests);
            const auto firstTagged = any.pick(20);
            HogAutomaton::State state = HogAutomaton::start();
            std::size_t depth = 0;
            for (std::string_view rest = path;; ++depth) {
                if (depth == firstTagged)
                    state = automaton.tagged(state);
                const auto slash = rest.find('/');
                if (slash == std::string_view::npos) {
                    ASSERT_EQ(automaton.classify(state, rest),
                              plainKind(tests, path, depth >= firstTagged))
                        << path;
                    break;
                }
                state = automaton.entering(state, rest.substr(0, slash));
                rest.remove_prefix(slash + 1);
            }
        }
    }
}

TEST(HogAutomaton, RefusesWhatItCannotHold)
{
    const std::pair<HogTest::Where, const char*> refused[] = {
        {nameIs, "Upper"},       {nameIs, "\xC3\xA9t"},   {nameIs, "a/b"},
        {nameIs, "a"},           {nameEndsWith, "*.x"},   {pathContains, "ab"},
        {pathContains, ""},      {pathContains, "/"},     {pathContains, "/ab/"},
        {pathContains, "/a/bc"}, {within, "//ab"},        {pathContains, "/abi"},
        {pathContains, "/ab/*"}, {within, "/ab/c*"},      {within, "/*/ab"},
        {within, "/ab/*"},       {within, "/ab/*/**/cd"}, {within, "/ab/"},
        {tagged, "ab"},
    };
    for (const auto& [where, text] : refused)
        EXPECT_THROW(HogTest(where, text, caches), const char*) << text;

    std::list<std::string> texts;
    const auto many = [&texts](std::size_t count, const std::string& before,
                               const std::string& behind) {
        std::vector<HogTest> tests;
        for (std::size_t i = 0; i < count; ++i)
            tests.emplace_back(within, texts.emplace_back(before + std::to_string(10 + i) + behind),
                               caches);
        return tests;
    };
    EXPECT_NO_THROW(HogAutomaton(many(128, "/", ""), {}));
    EXPECT_THROW(HogAutomaton(many(129, "/", ""), {}), const char*);
    EXPECT_NO_THROW(HogAutomaton(many(62, "/", "/ab"), {}));
    EXPECT_THROW(HogAutomaton(many(63, "/", "/ab"), {}), const char*);
    const std::vector<HogTest> same(193, HogTest(nameIs, "ab", caches));
    EXPECT_NO_THROW(HogAutomaton({same.data(), 192}, {}));
    EXPECT_THROW(HogAutomaton(same, {}), const char*);
}

TEST(HogKind, RawValuesNameTheirCases)
{
    for (const HogKind kind : allHogKinds)
        EXPECT_EQ(hogKindFromRawValue(rawValue(kind)), kind);
    for (const Risk risk : allRisks)
        EXPECT_EQ(riskFromRawValue(rawValue(risk)), risk);
    EXPECT_EQ(hogKindFromRawValue("Caches"), std::nullopt);
    EXPECT_EQ(hogKindFromRawValue(""), std::nullopt);
    EXPECT_EQ(riskFromRawValue("none"), std::nullopt);
    EXPECT_EQ(title(none), "File");
    EXPECT_EQ(risk(none), Risk::unknown);
    EXPECT_EQ(risk(iosBackup), Risk::caution);
}

} // namespace
