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
    for (const char* name : {"items/one", "items/two", "gone", "folder/inside"})
        tree.file(name, 300'000);
    tree.file("treasure");
    tree.folder("data/Trash/info");
    const TrashRequest request =
        TrashRequest::make(urls({"items/one", "items/two", "gone", "data", "data/Trash/info",
                                 "folder", "folder/inside", "folder"}),
                           0);
    tree.remove("gone");
    tree.remove("items/two");
    tree.link("items/two", tree.at("treasure"));

    // The trash cannot hold what it lies in, nor what it needs; what is in a folder goes
    // along with it. What the system says comes first.
    const CleanReport report = move(request);
    EXPECT_EQ(report.movedCount, 2);
    EXPECT_GE(report.movedBytes, 300'000);
    EXPECT_EQ(report.failures, (std::vector<std::string>{
                                   "data: " + std::generic_category().message(EINVAL),
                                   "Could not move two to Trash.", "Could not move gone to Trash.",
                                   "Could not move data to Trash.", "Could not move info to Trash.",
                                   "Could not move inside to Trash."}));
    EXPECT_EQ(namesIn(tree.at("items")), std::vector<std::string>{"two"});
    EXPECT_TRUE(exists(tree.at("treasure")));
    EXPECT_TRUE(exists(tree.at("data/Trash/files/folder/inside")));
    EXPECT_EQ(originOf(FileURL(tree.at("data/Trash/files/one"))), tree.at("items/one"));
}

TEST_F(DesktopWorkspaceTest, AMoveStopsWithTheProgram)
{
    constexpr int count = 10'000;
    bool isEnded = false;
    workspace->recycle(TrashItem::record(manyFiles(count)),
                       [&](const Workspace::Recycled&) { isEnded = true; });
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
