#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/Paths.h"
#include "host/Package.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <array>
#include <tuple>

using namespace brisalon;
using host::isPackageName;
using tests::TemporaryTree;

namespace {

TEST(FileURL, WholeAndComposedPathsAreTheSameLocation)
{
    EXPECT_EQ(FileURL("/").appendingPathComponent("/a//b\xFF/").path(), "/a/b\xFF");
    EXPECT_EQ(FileURL().appendingPathComponent("a").path(), "a");
    std::vector<FileURL> urls;
    for (const char* top : {"", "/", "a", "bc", "/a", "/A", "/abc", "/a/bc", "/x/a"})
        for (const char* below : {"", "a", "bc", "a/bc", "a/c"}) {
            urls.push_back(FileURL(top).appendingPathComponent(below));
            urls.emplace_back(urls.back().path());
        }
    for (const FileURL& url : urls) {
        const std::string path = url.path();
        const FileURL whole(path);
        EXPECT_EQ(url.lastPathComponent(), whole.lastPathComponent());
        EXPECT_EQ(url.deletingLastPathComponent().path(), whole.deletingLastPathComponent().path());
        EXPECT_FALSE(url.pathEquals(path + '/') || url.pathEquals('/' + path)) << path;
        for (const FileURL& other : urls) {
            EXPECT_EQ(url == other, path == other.path()) << path << ' ' << other.path();
            EXPECT_EQ(url.pathEquals(other.path()), path == other.path()) << path;
        }
    }
}

TEST(FileURL, TakesPathsApartByTextAlone)
{
    // As given, its last part, what that lies in, and what it is without detours.
    const std::array<const char*, 5> cases[] = {
        {"/", "/", "", "/", "/"},
        {"//", "/", "", "/", "/"},
        {"/a/", "/a", "a", "/", "/a"},
        {"/a/b", "/a/b", "b", "/a", "/a/b"},
        {"/a/./b//c/../d/", "/a/./b//c/../d", "d", "/a/./b//c/..", "/a/b/d"},
        {"/../../x", "/../../x", "x", "/../..", "/x"},
        {"/a/..", "/a/..", "..", "/a", "/"},
        {"/...", "/...", "...", "/", "/..."},
        {"a", "a", "a", "", nullptr},
        {"a/b", "a/b", "b", "a", nullptr},
        {"", "", "", "", ""},
    };
    for (const auto& [path, normal, last, folder, standard] : cases) {
        const FileURL url(path);
        EXPECT_EQ(url.path(), normal);
        EXPECT_EQ(url.lastPathComponent(), last);
        EXPECT_EQ(url.deletingLastPathComponent().path(), folder);
        EXPECT_TRUE(!standard || url.standardized().path() == standard) << path;
    }
    const std::string here = FileURL("x/../y").standardized().path();
    EXPECT_TRUE(here.starts_with('/') && here.ends_with("/y")) << here;
}

TEST(FileURL, ResolvesLinksAsFarAsThePathExists)
{
    TemporaryTree tree;
    tree.folder("real/inner");
    tree.file("real/file");
    tree.link("relative", "real");
    tree.link("absolute", tree.at("relative/inner"));
    tree.link("real/up", "../relative/inner");
    tree.link("circleA", "circleB");
    tree.link("circleB", "circleA");
    const std::pair<const char*, const char*> cases[] = {
        {"relative", "real"},
        {"absolute", "real/inner"},
        {"relative/up", "real/inner"},
        {"absolute/../file", "real/file"},
        {"relative/./missing/x", "real/missing/x"},
        {"relative/file/below", "real/file/below"},
        {"circleA", "circleA"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(FileURL(tree.at(path)).resolvingSymbolicLinks().path(), tree.at(expected));
    EXPECT_EQ(FileURL("/").resolvingSymbolicLinks().path(), "/");
}

TEST(Paths, FollowWholeComponents)
{
    const std::tuple<std::string_view, std::string_view, bool> rows[] = {
        {"/a/b", "/a", true}, {"/a", "/a", true}, {"/ab", "/a", false}, {"/a", "/a/b", false},
        {"/a", "/", true},    {"/", "/", true},   {"", "/", false}};
    for (const auto& [path, folder, isWithin] : rows) {
        EXPECT_EQ(paths::isWithin(path, folder), isWithin) << path << ' ' << folder;
        EXPECT_EQ(paths::isBelow(path, folder), isWithin && path != folder) << path;
        if (isWithin) {
            EXPECT_EQ(paths::joined(folder, paths::relative(path, folder)), path);
        }
    }
}

TEST(Paths, ArePiecesBetweenSlashes)
{
    using Pieces = std::vector<std::string_view>;
    EXPECT_EQ(paths::components("//a/ b//\xff/"), (Pieces{"a", " b", "\xff"}));
    EXPECT_EQ(paths::components("/"), Pieces());
    EXPECT_EQ(paths::way("/"), Pieces{"/"});
    EXPECT_EQ(paths::way("/a/bc/d"), (Pieces{"/", "/a", "/a/bc", "/a/bc/d"}));
}

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
