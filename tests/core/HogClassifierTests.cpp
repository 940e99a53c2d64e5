#include "BrisalonCore/HogClassifier.h"

#include "analysis/HogTrail.h"
#include "support/PlainClassifier.h"

#include <gtest/gtest.h>

#include <algorithm>
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
        {nodeModules, {"/Users/a/MobileSync/Backup/node_modules", "node_modules"}},
        {iosBackup, {"/Users/a/Library/Caches/MobileSync/Backup/abc"}},
        {timeMachineSnapshot,
         {"/Users/a/Library/Caches/.LocalSnapshots/x",
          "/Users/a/Library/Caches/com.apple.TimeMachine.x/y", "/.snapshots/1/snapshot/var/log/x",
          "/timeshift/snapshots/2024/localhost/home/a/.cache"}},
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
          "/home/a/.cache/x.iso", "/var/cache//x", "/var/lib/apt/lists/x",
          "/home/a/.thumbnails/large", "/home/a/.pip/cache", "/home/a/.npm/_cacache/index-v5",
          "/home/a/.local/share/pnpm/store/v3", "/mnt/data/.pnpm-store/v3",
          "/home/a/site/.yarn/cache/x.zip"}},
        {caches,
         {"/home/a/.yarn/berry/cache", "/home/a/.bun/install/cache", "/home/a/.cargo/registry/src",
          "/home/a/.cargo/git", "/home/a/go/pkg/mod/cache", "/home/a/.gradle/caches",
          "/home/a/.gradle/wrapper/dists", "/home/a/.m2/repository", "/home/a/.nuget/packages",
          "/home/a/anaconda3/pkgs", "/home/a/miniconda3/pkgs/x"}},
        {caches,
         {"/home/a/miniforge3/pkgs", "/opt/conda/pkgs", "/home/a/.conda/pkgs",
          "/home/a/.ccache/0/1", "/home/a/.var/app/org.x.Y/cache/z", "/home/a/.config/Code/Cache",
          "/home/a/.config/chromium/Default/Code Cache/js", "/home/a/.config/cache",
          "/home/a/.config/x/Default/GPUCache",
          "/home/a/.config/x/Default/Service Worker/CacheStorage/y"}},
        {logs,
         {"/Users/a/Library/Logs/.Trash/x", "/var/log", "/mnt/disk/var/log/journal/x",
          "/run/log/journal", "/var/crash/x.crash", "/var/lib/systemd/coredump/x.zst"}},
        {trash,
         {"/Users/a/.Trash/Setup.dmg", "/Users/a/Library/Trashes/x.pkg",
          "/home/a/.local/share/Trash/files/.cache"}},
        {installer,
         {"/home/a/.cache/x.DMG", "/home/a/.cache/x.pkg", "/home/a/x.snap", "/home/a/x.ISO",
          "/home/a/x.deb", "/home/a/x.rpm", "/home/a/x.AppImage", "/home/a/x.flatpakref"}},
        {none,
         {"/Users/a/VMs/docker.raw.bak", "/Users/a/proj/node_modules/lib/index.js",
          "/Users/a/Library/Other/Caches", "/var/lib/docker.old", "/home/a/.npm/_logs",
          "/home/a/.bun/bin/bun", "/home/a/.cargo/bin/x", "/home/a/go/pkg/models",
          "/home/a/miniconda3/envs/x", "/home/a/.var/app/org.x.Y/data/cache",
          "/home/a/.config/x/CacheStore", "/home/a/x/cache", "/src/var/logout.c",
          "/var/lib/snapd/snaps/core_1.snap", ".Trash/x", "/library//caches/x", "/", ""}},
    };
    for (const auto& [kind, paths] : samples)
        for (const char* path : paths)
            EXPECT_EQ(HogClassifier::classify(FileURL(path)), kind) << path;
    EXPECT_EQ(HogTrail::of("/").entering("Library").classify("Logs"), logs);
    EXPECT_EQ(HogTrail::of("/src/target").tagged().classify("x.deb"), caches);
    EXPECT_EQ(HogTrail::of("/src/target").tagged().classify("node_modules"), nodeModules);
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
            std::array<std::uint8_t, 12> bytes;
            std::ranges::generate(bytes, [&random] { return random(); });
            const std::string path = pathOf(bytes, tests);
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

    // So many beginnings of paths are told from one another.
    std::list<std::string> texts;
    std::vector<HogTest> tests;
    for (int i = 0; i < 63; ++i)
        tests.emplace_back(within, texts.emplace_back("/" + std::to_string(10 + i) + "/ab"),
                           caches);
    EXPECT_NO_THROW(HogAutomaton(std::span(tests).first(62), {}));
    EXPECT_THROW(HogAutomaton(tests, {}), const char*);
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
