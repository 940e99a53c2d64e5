#include "BrisalonCore/HogClassifier.h"

#include "analysis/CommonHogs.h"
#include "analysis/HogTrail.h"
#include "support/PlainClassifier.h"

#include "HogPlaces.h" // this system's

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <list>
#include <random>
#include <span>
#include <string>
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
    const std::pair<HogKind, std::vector<const char*>> samples[] = {
        {docker,
         {"/Users/a/VMs/Docker.raw", "/Users/a/Docker.raw.qcow2",
          "/Users/a/Library/Caches/com.docker.docker/x",
          "/Users/a/Library/Group.com.dockers/node_modules", "/var/lib/docker/overlay2/x/var/log",
          "/var/lib/containerd", "/var/lib/containers/storage",
          "/home/a/.local/share/containers/cache", "/home/a/.local/share/docker"}},
        {nodeModules,
         {"/Users/a/proj/node_modules", "/Users/a/MobileSync/Backup/node_modules", "node_modules"}},
        {iosBackup, {"/Users/a/Library/Caches/MobileSync/Backup/abc"}},
        {timeMachineSnapshot,
         {"/Users/a/Library/Caches/.LocalSnapshots/x",
          "/Users/a/Library/Caches/com.apple.TimeMachine.x/y", "/.snapshots",
          "/.snapshots/1/snapshot/var/log/x", "/timeshift/snapshots/2024/localhost/home/a/.cache"}},
        {xcodeDerivedData,
         {"/Users/a/Library/Caches/Developer/Xcode/DerivedData/x",
          "/Users/a/Library/Developer/Xcode/Archives/2024-01-01/App.xcarchive"}},
        {xcodeSimulators,
         {"/Users/a/Library/Caches/Developer/CoreSimulator/x",
          "/Users/a/Library/Developer/Xcode/iOS DeviceSupport/17.0"}},
        {homebrew,
         {"/Users/a/Library/Caches/Homebrew/downloads/f.tar.gz",
          "/Library/Caches/x/homebrew/Caches/y", "/home/a/.cache/Homebrew"}},
        {caches,
         {"/Users/a/Library/CachesOld/z", "/Users/a/Library/Caches/Library/Logs",
          "/Users/a/Library/Caches/.small-files-aggregate", "/home/a/.cache",
          "/home/a/.cache/x.iso", "/var/cache", "/var/cache//x", "/var/lib/apt/lists/x",
          "/home/a/.thumbnails/large", "/home/a/.pip/cache"}},
        {caches,
         {"/home/a/.npm/_cacache/index-v5", "/home/a/.local/share/pnpm/store/v3",
          "/mnt/data/.pnpm-store/v3", "/home/a/site/.yarn/cache/x.zip", "/home/a/.yarn/berry/cache",
          "/home/a/.bun/install/cache", "/home/a/.cargo/registry/src", "/home/a/.cargo/git",
          "/home/a/go/pkg/mod/cache", "/home/a/.gradle/caches"}},
        {caches,
         {"/home/a/.gradle/wrapper/dists", "/home/a/.m2/repository", "/home/a/.nuget/packages",
          "/home/a/anaconda3/pkgs", "/home/a/miniconda3/pkgs/x", "/home/a/miniforge3/pkgs",
          "/opt/conda/pkgs", "/home/a/.conda/pkgs", "/home/a/.ccache/0/1",
          "/home/a/.var/app/org.x.Y/cache/z"}},
        {caches,
         {"/home/a/.config/Code/Cache", "/home/a/.config/chromium/Default/Code Cache/js",
          "/home/a/.config/cache", "/home/a/.config/x/Default/GPUCache",
          "/home/a/.config/x/Default/Service Worker/CacheStorage/y", "x/library/caches",
          "//library/caches"}},
        {logs,
         {"/Users/a/Library/Logs/.Trash/x", "/var/log", "/mnt/disk/var/log/journal/x",
          "/run/log/journal", "/var/crash/x.crash", "/var/lib/systemd/coredump/x.zst"}},
        {trash,
         {"/Users/a/.Trash/Setup.dmg", "/Volumes/x/.Trashes/501/y",
          "/Users/a/Library/Trashes/x.pkg", "/home/a/.local/share/Trash/files/x.deb",
          "/home/a/.local/share/Trash/files/.cache"}},
        {installer,
         {"/Users/a/Downloads/Setup.DMG", "/home/a/.cache/x.dmg", "/home/a/.cache/x.pkg",
          "/home/a/x.snap", "/home/a/x.ISO", "/home/a/x.deb", "/home/a/x.rpm", "/home/a/x.AppImage",
          "/home/a/x.flatpakref", "/x.snap", ".dmg"}},
        {none,
         {"/Users/a/VMs/docker.raw.bak", "/Users/a/proj/node_modules/lib/index.js",
          "/Users/a/proj/node_modules/.small-files-aggregate", "/Users/a/Library/Other/Caches",
          "/var/lib/docker.old", "/home/a/.cached", "/home/a/x.cache", "/home/a/.npm/_logs",
          "/home/a/.bun/bin/bun", "/home/a/.cargo/bin/x", "/home/a/go/pkg/models",
          "/home/a/miniconda3/envs/x"}},
        {none,
         {"/home/a/.var/app/cache", "/home/a/.var/app/org.x.Y/data/cache",
          "/home/a/.config/x/CacheStore", "/home/a/x/cache", "/src/var/logout.c",
          "/var/lib/snapd/snaps/core_1.snap", ".Trash/x", ".cache/x", "library/caches/x",
          "/library//caches/x", "/", ""}},
    };
    for (const auto& [kind, paths] : samples)
        for (const char* path : paths)
            EXPECT_EQ(HogClassifier::classify(FileURL(path)), kind) << path;
}

/// A path rich in what the tests look for.
std::string anyPath(std::mt19937& random, std::span<const HogTest> tests)
{
    std::array<std::uint8_t, 12> bytes;
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return pathOf(bytes, tests);
}

TEST(HogClassifier, AgreesWithTryingEachOfItsTestsOnTheWholePath)
{
    std::vector<HogTest> all(detail::commonHogs.begin(), detail::commonHogs.end());
    all.insert(all.end(), detail::hogPlaces.begin(), detail::hogPlaces.end());
    std::mt19937 random(5);
    for (int i = 0; i < 20'000; ++i) {
        const FileURL url(anyPath(random, all));
        const std::string path = url.path();
        ASSERT_EQ(HogClassifier::classify(url), plainKind(all, path, false)) << path;
        if (const auto slash = path.rfind('/'); slash != std::string::npos) {
            const HogTrail trail = HogTrail::of(std::string_view(path).substr(0, slash)).tagged();
            ASSERT_EQ(trail.classify(std::string_view(path).substr(slash + 1)),
                      plainKind(all, path, true))
                << path;
        }
    }
    EXPECT_EQ(HogTrail::of("/").entering("Library").classify("Logs"), logs);
    EXPECT_EQ(HogTrail::of("/src/thing/target").tagged().classify("x.deb"), caches);
}

TEST(HogAutomaton, WhateverTheTestsAgreesWithTryingEachOnTheWholePath)
{
    std::mt19937 random(3);
    const auto pick = [&random](std::size_t count) { return random() % count; };
    const auto name = [&] {
        std::string made;
        for (auto size = 2 + pick(2); size > 0; --size)
            made += "kki."[pick(4)];
        return made;
    };
    for (int round = 0; round < 1000; ++round) {
        // Much alike, so that many of them hold for one path.
        std::list<std::string> texts;
        std::vector<HogTest> tests;
        while (tests.size() < 8) {
            const auto where = static_cast<HogTest::Where>(pick(5));
            std::string& text = texts.emplace_back();
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
        const std::span all(tests);
        const HogAutomaton automaton(all.first(4), all.subspan(4));
        for (int i = 0; i < 200; ++i) {
            const std::string path = anyPath(random, tests);
            const auto firstTagged = pick(20);
            HogAutomaton::State state = HogAutomaton::start();
            std::size_t depth = 0;
            std::string_view rest = path;
            for (;; ++depth) {
                if (depth == firstTagged)
                    state = automaton.tagged(state);
                const auto slash = rest.find('/');
                if (slash == std::string_view::npos)
                    break;
                state = automaton.entering(state, rest.substr(0, slash));
                rest.remove_prefix(slash + 1);
            }
            ASSERT_EQ(automaton.classify(state, rest), plainKind(tests, path, depth >= firstTagged))
                << path;
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
    EXPECT_EQ(riskFromRawValue("none"), std::nullopt);
}

} // namespace
