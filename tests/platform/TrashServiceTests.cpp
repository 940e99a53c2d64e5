#include "Brisalon/Services/TrashService.h"

#include "Brisalon/Services/TrashRequest.h"

#include "TrashProbe.h"
#include "support/MemoryWorkspace.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <gtest/gtest.h>

#include <memory>

#include <sys/stat.h>

namespace brisalon::tests {

namespace {

/// The service over real items that a workspace only pretends to move.
class TrashServiceTest : public ::testing::Test {
protected:
    TemporaryTree tree;
    MemoryWorkspace workspace;
    std::unique_ptr<TrashService> service = std::make_unique<TrashService>(workspace);
    std::vector<CleanReport> reports;

    std::vector<TrashItem> items(const std::vector<std::string>& relative) const
    {
        std::vector<FileURL> urls;
        for (const std::string& path : relative)
            urls.emplace_back(tree.at(path));
        return TrashItem::record(urls);
    }
    void move(const std::vector<std::string>& relative)
    {
        service->moveToTrash(items(relative),
                             [this](const CleanReport& report) { reports.push_back(report); });
    }
    CleanReport reportOf(const std::vector<std::string>& relative)
    {
        move(relative);
        EXPECT_TRUE(reports.empty()) << "not before the call returns";
        EXPECT_TRUE(QTest::qWaitFor([this] { return !reports.empty(); }));
        return reports.empty() ? CleanReport{} : reports.front();
    }
    bool waitForRequests(std::size_t count)
    {
        return QTest::qWaitFor([&] { return workspace.requests.size() == count; });
    }
    bool waitForReports(std::size_t count)
    {
        return QTest::qWaitFor([&] { return reports.size() == count; });
    }
    std::int64_t allocated(const std::string& relative) const
    {
        struct stat status;
        return ::lstat(tree.at(relative).c_str(), &status) == 0 ? status.st_blocks * 512 : -1;
    }
};

TEST_F(TrashServiceTest, WhatWasMovedIsCountedAndTheRestNamedInOrder)
{
    tree.file("a", 100'000);
    tree.file("folder/inside", 900'000);
    tree.file("b\xff", 50'000);
    tree.link("link", "a");
    workspace.refusedPaths = {tree.at("b\xff"), tree.at("missing")};
    workspace.error = "The disk is full.";

    const CleanReport report = reportOf({"missing", "a", "b\xff", "folder", "link"});
    EXPECT_EQ(report.movedCount, 3);
    EXPECT_EQ(report.movedBytes, allocated("a") + allocated("folder") + allocated("link"))
        << "each item itself, without what is in it or where it leads";
    EXPECT_EQ(report.failures,
              (std::vector<std::string>{"The disk is full.", "Could not move missing to Trash.",
                                        "Could not move b\xff to Trash."}));
    ASSERT_EQ(workspace.requests.size(), 1U) << "one call for all";
    EXPECT_EQ(workspace.requests.front().size(), 5U);
}

TEST_F(TrashServiceTest, NothingMoved)
{
    tree.file("a", 10'000);
    workspace.refusedPaths = {tree.at("a")};
    EXPECT_EQ(reportOf({"a"}), (CleanReport{0, 0, {"Could not move a to Trash."}}));
    reports.clear();
    EXPECT_EQ(reportOf({}), CleanReport{});
}

TEST_F(TrashServiceTest, AnItemGivenTwiceCountsOnce)
{
    tree.file("a", 10'000);
    EXPECT_EQ(reportOf({"a", "a"}), (CleanReport{1, allocated("a"), {}}));
}

TEST_F(TrashServiceTest, ItemsAreMeasuredBeforeTheyMove)
{
    tree.file("a", 100'000);
    const std::int64_t before = allocated("a");
    workspace.holdsMoves = true;
    move({"a"});
    ASSERT_TRUE(waitForRequests(1));
    tree.remove("a");
    ASSERT_TRUE(workspace.releaseMove());
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(reports.front(), (CleanReport{1, before, {}}));
}

TEST_F(TrashServiceTest, TwoMovesAtOnceEndWithTheirOwnReports)
{
    tree.file("a", 10'000);
    tree.file("b", 100'000);
    workspace.holdsMoves = true;
    move({"a"});
    ASSERT_TRUE(waitForRequests(1));
    move({"b"});
    ASSERT_TRUE(waitForRequests(2));
    ASSERT_TRUE(workspace.releaseMove());
    ASSERT_TRUE(waitForReports(1));
    workspace.refusedPaths = {tree.at("b")};
    ASSERT_TRUE(workspace.releaseMove());
    ASSERT_TRUE(waitForReports(2));
    EXPECT_EQ(reports[0], (CleanReport{1, allocated("a"), {}}));
    EXPECT_EQ(reports[1], (CleanReport{0, 0, {"Could not move b to Trash."}}));
}

TEST_F(TrashServiceTest, WhoeverIsGoneHearsNothing)
{
    tree.file("a", 10'000);
    workspace.holdsMoves = true;
    move({"a"});
    ASSERT_TRUE(waitForRequests(1));
    service.reset();
    ASSERT_TRUE(workspace.releaseMove());
    // Gone before the move began, there is none.
    service = std::make_unique<TrashService>(workspace);
    move({"a"});
    service.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(workspace.requests.size(), 1U);
    EXPECT_TRUE(reports.empty());
}

TEST(TrashRequest, ProtectedItemsAreLeftOutAndCounted)
{
    const TemporaryTree tree;
    tree.file("a");
    tree.file("b");
    const TrashRequest request = TrashRequest::make(
        {FileURL(tree.at("b")), FileURL("/System/x"), FileURL(tree.at("a")), FileURL("/etc/fstab")},
        77);
    EXPECT_EQ(request.urls, (std::vector{FileURL(tree.at("b")), FileURL(tree.at("a"))}));
    EXPECT_EQ(request.bytes, 77);
    EXPECT_EQ(request.blockedCount, 2);
    ASSERT_EQ(request.items.size(), 2U);
    EXPECT_EQ(request.items[1].url, FileURL(tree.at("a")));
    EXPECT_EQ(request.items[1].identity->inode, inodeOf(tree.at("a")));

    const TrashRequest nothing = TrashRequest::make({FileURL("/"), FileURL("/usr/bin")}, 5);
    EXPECT_TRUE(nothing.urls.empty());
    EXPECT_EQ(nothing.blockedCount, 2);
}

TEST(TrashRequest, WhatWasRecordedIsNoPartOfItsIdentity)
{
    const TemporaryTree tree;
    tree.file("a");
    const std::vector urls{FileURL(tree.at("a")), FileURL(tree.at("b"))};
    const TrashRequest before = TrashRequest::make(urls, 1);
    tree.remove("a");
    const TrashRequest after = TrashRequest::make(urls, 1);
    EXPECT_FALSE(after.items.front().identity);
    EXPECT_EQ(before, after);
    EXPECT_EQ(before.id(), tree.at("a") + '|' + tree.at("b"));
    EXPECT_NE(before, TrashRequest::make(urls, 2));
}

} // namespace

} // namespace brisalon::tests
