#include "Brisalon/Platform/DesktopWorkspace.h"

#include "Brisalon/Services/TrashRequest.h"
#include "Brisalon/Services/TrashService.h"

#include "TrashProbe.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <system_error>

#include <sys/mount.h>
#include <sys/stat.h>

namespace brisalon::tests {

namespace {

/// Real moves to a home trash of the test's own.
class DesktopWorkspaceTest : public ::testing::Test {
protected:
    TemporaryTree tree;
    std::unique_ptr<DesktopWorkspace> workspace = std::make_unique<DesktopWorkspace>();

    void SetUp() override { ::setenv("XDG_DATA_HOME", tree.at("data").c_str(), 1); }

    /// As the model does it: the question, whatever happens then, and the yes.
    CleanReport move(const TrashRequest& request)
    {
        TrashService service(*workspace);
        std::optional<CleanReport> report;
        service.moveToTrash(request.items, [&](const CleanReport& r) { report = r; });
        EXPECT_FALSE(report);
        EXPECT_TRUE(QTest::qWaitFor([&] { return report.has_value(); }, 60'000));
        return report.value_or(CleanReport{});
    }

    std::vector<FileURL> urls(const std::vector<std::string>& relative) const
    {
        std::vector<FileURL> urls;
        for (const std::string& path : relative)
            urls.emplace_back(tree.at(path));
        return urls;
    }
    std::vector<FileURL> manyFiles(int count) const
    {
        std::vector<std::string> names;
        tree.folder("items");
        for (int i = 0; i < count; ++i)
            writeText(tree.at(names.emplace_back("items/file " + std::to_string(i))), "");
        return urls(names);
    }
};

TEST_F(DesktopWorkspaceTest, WhatWasAskedAboutMovesAndTheRestIsNamed)
{
    const std::string gone = "gone\xff";
    for (const char* name : {"items/one", "items/two", "gone\xff", "folder/inside"})
        tree.file(name, 300'000);
    tree.file("treasure", 300'000);
    tree.link("link", "treasure");
    tree.write("data/Trash/files/old", "");
    tree.write("data/Trash/info/old.trashinfo", "");
    std::vector<FileURL> asked =
        urls({"items/one", "items/two", gone, "link", "data", "data/Trash/info",
              "data/Trash/files/old", "folder", "folder/inside", "folder"});
    const std::vector<FileURL> allowed = asked;
    asked.insert(asked.begin(), {FileURL("/System/x"), FileURL("/etc/fstab")});
    const TrashRequest request = TrashRequest::make(asked, 77);
    EXPECT_EQ(request.urls, allowed);
    EXPECT_EQ(request.blockedCount, 2);
    EXPECT_TRUE(request.id().starts_with(tree.at("items/one|") + tree.at("items/two|")));
    // What itself occupies: not what is in it, nor where it leads, nor twice.
    std::int64_t bytes = 0;
    for (const char* name : {"items/one", "link", "folder"}) {
        struct stat status;
        ASSERT_EQ(::lstat(tree.at(name).c_str(), &status), 0);
        bytes += status.st_blocks * 512;
    }
    tree.remove(gone);
    tree.remove("items/two");
    tree.link("items/two", tree.at("treasure"));
    // What was recorded is no part of what was asked.
    EXPECT_EQ(request, TrashRequest::make(asked, 77));
    EXPECT_NE(request, TrashRequest::make(asked, 2));

    // The trash cannot hold what it lies in, nor what it needs or holds; what is in a folder
    // goes along with it. What the system says comes first.
    std::vector<std::string> failures{"data: " + std::generic_category().message(EINVAL)};
    for (const std::string name : {"two", gone.c_str(), "data", "info", "old", "inside"})
        failures.push_back("Could not move " + name + " to Trash.");
    EXPECT_EQ(move(request), (CleanReport{3, bytes, failures}));
    EXPECT_EQ(namesIn(tree.at("items")), std::vector<std::string>{"two"});
    EXPECT_TRUE(exists(tree.at("treasure")));
    EXPECT_TRUE(exists(tree.at("data/Trash/files/folder/inside")));
    EXPECT_EQ(originOf(FileURL(tree.at("data/Trash/files/one"))), tree.at("items/one"));
    EXPECT_EQ(namesIn(tree.at("data/Trash/info")).size(), 4U);
    EXPECT_EQ(move({}), CleanReport{});
}

TEST_F(DesktopWorkspaceTest, AMoveStopsWithTheProgram)
{
    constexpr int count = 10'000;
    bool isEnded = false;
    const std::vector<TrashItem> items = TrashItem::record(manyFiles(count));
    // Gone before the first moved, nobody is told of any.
    TrashService(*workspace).moveToTrash(items, [&](const CleanReport&) { isEnded = true; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(exists(tree.at("data")));
    workspace->recycle(items, [&](const Workspace::Recycled&) { isEnded = true; });
    while (namesIn(tree.at("data/Trash/files")).empty()) {
    }
    workspace.reset();
    QCoreApplication::processEvents();

    EXPECT_FALSE(isEnded);
    const std::vector<std::string> moved = namesIn(tree.at("data/Trash/files"));
    EXPECT_GT(namesIn(tree.at("items")).size(), 0U);
    EXPECT_EQ(moved.size() + namesIn(tree.at("items")).size(), std::size_t{count});
    EXPECT_EQ(namesIn(tree.at("data/Trash/info")).size(), moved.size());
    for (const std::string& name : moved)
        EXPECT_EQ(originOf(FileURL(tree.at("data/Trash/files/" + name))), tree.at("items/" + name));
}

TEST_F(DesktopWorkspaceTest, WhyItemsStayIsSaid)
{
    const TemporaryTree volume(TemporaryTree::Storage::memory);
    if (!volume.isInMemory())
        GTEST_SKIP() << "needs the right to mount";
    volume.file("item");
    ASSERT_EQ(::mount(nullptr, volume.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    tree.folder("item/mounted");
    ASSERT_EQ(::mount("", tree.at("item/mounted").c_str(), "tmpfs", 0, nullptr), 0);
    for (const auto& [path, reason] :
         {std::pair(volume.at("item"), std::generic_category().message(EROFS)),
          {tree.at("item"), "A volume is mounted in it"}})
        EXPECT_EQ(move(TrashRequest::make({FileURL(path)}, 0)).failures,
                  (std::vector<std::string>{"item: " + reason, "Could not move item to Trash."}));
    ::umount(tree.at("item/mounted").c_str());
}

} // namespace

} // namespace brisalon::tests
