#include "BrisalonCore/HogClassifier.h"

#include "analysis/HogTrail.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

using namespace brisalon;
using detail::HogTrail;

namespace {

using enum HogKind;

enum Where { is, ends, contains };

struct Test {
    Where where;
    std::string_view text;
    HogKind kind;
};

/// Everything that the classifier looks for, in order.
const std::vector<Test> allTests{
    {is, "docker.raw", docker},
    {is, "docker.raw.qcow2", docker},
    {contains, "/com.docker.docker", docker},
    {contains, "/group.com.docker", docker},
    {is, "node_modules", nodeModules},
    {contains, "/mobilesync/backup", iosBackup},
    {contains, "/.localsnapshots", timeMachineSnapshot},
    {contains, "/com.apple.timemachine", timeMachineSnapshot},
    {contains, "/developer/xcode/deriveddata", xcodeDerivedData},
    {contains, "/developer/xcode/archives", xcodeDerivedData},
    {contains, "/developer/coresimulator", xcodeSimulators},
    {contains, "/xcode/ios devicesupport", xcodeSimulators},
    {contains, "/library/caches/homebrew", homebrew},
    {contains, "/homebrew/caches", homebrew},
    {contains, "/library/caches", caches},
    {contains, "/library/logs", logs},
    {contains, "/.trash", trash},
    {contains, "/library/trashes", trash},
    {ends, ".dmg", installer},
    {ends, ".pkg", installer},
    {contains, "/var/lib/docker", docker},
    {contains, "/var/lib/containers", docker},
    {contains, "/.local/share/containers", docker},
    {contains, "/.local/share/docker", docker},
    {contains, "/.snapshots/", timeMachineSnapshot},
    {contains, "/timeshift/snapshots", timeMachineSnapshot},
    {contains, "/.cache/homebrew", homebrew},
    {contains, "/.local/share/trash", trash},
    {contains, "/.cache/", caches},
    {contains, "/var/cache/", caches},
    {contains, "/.pip/cache", caches},
    {contains, "/.npm/_cacache", caches},
    {contains, "/.cargo/registry", caches},
    {contains, "/go/pkg/mod", caches},
    {contains, "/.gradle/caches", caches},
    {contains, "/.m2/repository", caches},
    {contains, "/.ccache", caches},
    {contains, "/var/log", logs},
    {ends, ".iso", installer},
    {ends, ".deb", installer},
    {ends, ".rpm", installer},
    {ends, ".appimage", installer},
    {ends, ".flatpakref", installer},
    {ends, ".snap", installer},
};

constexpr std::string_view kelvinSign = "\xE2\x84\xAA";
constexpr std::string_view dottedCapitalI = "\xC4\xB0"; // lowers to two characters

std::string lowerCased(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        std::size_t taken = 1;
        if (text.starts_with(kelvinSign)) {
            result += 'k';
            taken = kelvinSign.size();
        } else if (text.starts_with(dottedCapitalI)) {
            result += "i\xCC\x87";
            taken = dottedCapitalI.size();
        } else {
            result += text[0] >= 'A' && text[0] <= 'Z' ? static_cast<char>(text[0] + 32) : text[0];
        }
        text.remove_prefix(taken);
    }
    return result;
}

/// The classifier in its plainest form.
HogKind searched(std::string_view path)
{
    const std::string lowered = lowerCased(path);
    const std::string name = lowered.substr(lowered.rfind('/') + 1);
    for (const Test& test : allTests)
        if (test.where == is     ? name == test.text
            : test.where == ends ? name.ends_with(test.text)
                                 : lowered.find(test.text) != std::string::npos)
            return test.kind;
    return none;
}

/// Paths put together from pieces of what is looked for, and spoilt at random.
class PathMaker {
public:
    std::string next()
    {
        std::string path(pick(5) == 0 ? "" : "/");
        for (auto pieces = 1 + pick(4); pieces > 0; --pieces) {
            append(path);
            if (pick(8) != 0)
                path += '/';
        }
        for (char& c : path)
            if (c >= 'a' && c <= 'z' && pick(6) == 0)
                c = static_cast<char>(c - 32);
        for (std::size_t at = path.find('k'); at != std::string::npos; at = path.find('k', at + 1))
            if (pick(3) == 0)
                path.replace(at, 1, kelvinSign);
        if (pick(8) == 0 && !path.empty())
            path.insert(pick(path.size()), spoilers_[pick(std::size(spoilers_))]);
        return path;
    }

private:
    std::size_t pick(std::size_t count) { return random_() % count; }

    void append(std::string& path)
    {
        std::string_view text = allTests[pick(allTests.size())].text;
        if (text.starts_with('/'))
            text.remove_prefix(1);
        if (pick(4) == 0)
            text = text.substr(0, text.find('/'));
        else if (pick(4) == 0)
            text = text.substr(text.rfind('/') + 1);
        if (pick(8) == 0)
            text.remove_suffix(std::min<std::size_t>(1, text.size()));
        path += pick(6) == 0 ? "x" : "";
        path += text;
        path += pick(6) == 0 ? "x" : "";
    }

    static constexpr std::string_view spoilers_[] = {
        "/", "//", "\xE2\x84", "\xE2", "\xAA", "\xFF", "\xC4\xB0", "\xE2\x84\xAA", ".", "\n", " ",
    };
    std::mt19937 random_{3};
};

TEST(HogClassifier, KnownPlaces)
{
    const std::pair<const char*, HogKind> samples[] = {
        {"/Users/a/Library/Caches/com.docker.docker/x", docker},
        {"/Users/a/Library/Caches/Homebrew/downloads/f.tar.gz", homebrew},
        {"/opt/homebrew/Caches/y", homebrew},
        {"/Users/a/Library/Developer/Xcode/Archives/2024-01-01/App.xcarchive", xcodeDerivedData},
        {"/Users/a/Library/Developer/Xcode/iOS DeviceSupport/17.0", xcodeSimulators},
        {"/Users/a/Library/Application Support/MobileSync/Backup/abc", iosBackup},
        {"/Users/a/Downloads/Setup.DMG", installer},
        {"/Users/a/.Trash/Setup.dmg", trash},
        {"/Volumes/x/.Trashes/501/y", trash},
        {"/Users/a/proj/node_modules", nodeModules},
        {"/Users/a/proj/node_modules/lib/index.js", none},
        {"/Users/a/proj/node_modules/.small-files-aggregate", none},
        {"/Users/a/VMs/Docker.raw", docker},
        {"/Users/a/VMs/docker.raw.bak", none},
        {"/Users/a/Library/CachesOld/z", caches},
        {"/Users/a/Library/Caches/.small-files-aggregate", caches},
        {"/Users/a/Library/Other/Caches", none},
        {"/home/a/.cache", none},
        {"/home/a/.cache/pip/http", caches},
        {"/home/a/.cache/Homebrew", homebrew},
        {"/home/a/.cache/x.dmg", installer},
        {"/home/a/.cache/x.iso", caches},
        {"/home/a/.local/share/Trash/files/x.deb", trash},
        {"/var/log/journal", logs},
        {"/home/a/x.AppImage", installer},
        {"/x.snap", installer},
        {".dmg", installer},
        {"node_modules", nodeModules},
        {".Trash/x", none},
        {"library/caches/x", none},
        {"x/library/caches", caches},
        {"/library//caches/x", none},
        {"//library/caches", caches},
        {"/var/cache//x", caches},
        {"/", none},
        {"", none},
    };
    for (const auto& [path, kind] : samples) {
        EXPECT_EQ(HogClassifier::classify(FileURL(path)), kind) << path;
        EXPECT_EQ(searched(path), kind) << path;
    }
}

TEST(HogClassifier, AgreesWithASearchOfTheWholePath)
{
    PathMaker paths;
    std::set<HogKind> seen;
    for (int i = 0; i < 200000; ++i) {
        const FileURL url(paths.next());
        const HogKind expected = searched(url.path());
        ASSERT_EQ(HogClassifier::classify(url), expected) << url.path();
        seen.insert(expected);
    }
    EXPECT_EQ(seen.size(), allHogKinds.size());
}

TEST(HogClassifier, ATrailCarriedDownAgreesWithASearchOfTheWholePath)
{
    PathMaker paths;
    for (int i = 0; i < 20000; ++i) {
        std::string path = FileURL(std::string("/").append(paths.next())).path();
        HogTrail trail = HogTrail::of(path);
        for (int level = 0; level < 3; ++level) {
            std::string name = paths.next();
            std::erase(name, '/');
            path.append("/").append(name);
            ASSERT_EQ(trail.classify(name), searched(path)) << path;
            trail = trail.entering(name);
        }
    }
}

TEST(HogClassifier, TheRootsTrailIsThatOfNoName)
{
    EXPECT_EQ(HogTrail::of("/").classify(".Trash"), trash);
    EXPECT_EQ(HogTrail::of("/").entering("Library").classify("Logs"), logs);
    EXPECT_EQ(HogTrail::of("").classify(".Trash"), trash);
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
