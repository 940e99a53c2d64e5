#include "BrisalonCore/Paths.h"

#include <gtest/gtest.h>

using namespace brisalon;

namespace {

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

} // namespace
