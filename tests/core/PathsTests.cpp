#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/Paths.h"
#include "host/Package.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <array>

using namespace brisalon;
using host::isPackageName;
using tests::TemporaryTree;

namespace {

FileURL built(std::initializer_list<const char*> components)
{
    FileURL url("/");
    for (const char* component : components)
        url = url.appendingPathComponent(component);
    return url;
}

TEST(FileURL, WholeAndComposedPathsAreTheSameLocation)
{
    const FileURL whole("/a/b/c\xFF");
    const FileURL composed = built({"a", "b", "c\xFF"});
    EXPECT_EQ(composed.path(), "/a/b/c\xFF");
    EXPECT_EQ(whole, composed);
    EXPECT_EQ(composed, built({"/a//b", "c\xFF/"}));
    EXPECT_NE(whole, built({"a", "b", "c"}));
    EXPECT_NE(whole, built({"b", "c\xFF"}));
    EXPECT_NE(built({"x", "b"}), built({"y", "b"}));
    EXPECT_NE(whole, FileURL());
    EXPECT_EQ(FileURL(), FileURL(""));
    EXPECT_EQ(FileURL("/a").appendingPathComponent("").path(), "/a");
    EXPECT_EQ(FileURL().appendingPathComponent("a").path(), "a");
}

TEST(FileURL, PathEqualsIsExact)
{
    for (const FileURL& url : {FileURL("/a/bc"), built({"a", "bc"})}) {
        EXPECT_TRUE(url.pathEquals("/a/bc"));
        for (const char* other : {"/a/bc/", "//a/bc", "/a//bc", "a/bc", "/bc", "bc", "c", "", "/",
                                  "/A/bc", "/x/a/bc", "/abc"})
            EXPECT_FALSE(url.pathEquals(other)) << other;
    }
    EXPECT_TRUE(built({"c"}).pathEquals("/c"));
    EXPECT_FALSE(built({"c"}).pathEquals("//c"));
    EXPECT_FALSE(built({"c"}).pathEquals("/x/c"));
    EXPECT_TRUE(FileURL().pathEquals(""));
}

TEST(FileURL, TakesPathsApart)
{
    const std::array<const char*, 4> cases[] = {
        {"/", "/", "", "/"},         {"//", "/", "", "/"},
        {"/a", "/a", "a", "/"},      {"/a/", "/a", "a", "/"},
        {"/a/b", "/a/b", "b", "/a"}, {"a", "a", "a", ""},
        {"a/b", "a/b", "b", "a"},    {"", "", "", ""},
    };
    for (const auto& [path, normal, last, folder] : cases) {
        const FileURL url(path);
        EXPECT_EQ(url.path(), normal);
        EXPECT_EQ(url.lastPathComponent(), last);
        EXPECT_EQ(url.deletingLastPathComponent().path(), folder);
    }
    EXPECT_EQ(built({"a", "b"}).deletingLastPathComponent(), FileURL("/a"));
    EXPECT_EQ(built({"a", "b"}).lastPathComponent(), "b");
}

TEST(FileURL, StandardizesByTextAlone)
{
    const std::pair<const char*, const char*> cases[] = {
        {"/a/./b//c/../d/", "/a/b/d"},
        {"/..", "/"},
        {"/../../x", "/x"},
        {"/a/..", "/"},
        {"/...", "/..."},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(FileURL(path).standardized().path(), expected);
    EXPECT_TRUE(FileURL("x/../y").standardized().path().ends_with("/y"));
    EXPECT_TRUE(FileURL("y").standardized().path().starts_with("/"));
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
    struct Row {
        std::string_view path;
        std::string_view folder;
        bool isWithin;
        bool isBelow;
    };
    for (const Row& row : {
             Row{"/a/b", "/a", true, true},
             Row{"/a", "/a", true, false},
             Row{"/ab", "/a", false, false},
             Row{"/a", "/a/b", false, false},
             Row{"/a", "/", true, true},
             Row{"/", "/", true, false},
             Row{"", "/", false, false},
         }) {
        EXPECT_EQ(paths::isWithin(row.path, row.folder), row.isWithin)
            << row.path << ' ' << row.folder;
        EXPECT_EQ(paths::isBelow(row.path, row.folder), row.isBelow)
            << row.path << ' ' << row.folder;
        if (row.isWithin) {
            EXPECT_EQ(paths::joined(row.folder, paths::relative(row.path, row.folder)), row.path);
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
