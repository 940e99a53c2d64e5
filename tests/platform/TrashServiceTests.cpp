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

    void SetUp() override { workspace.holdsMoves = true; }

    std::vector<TrashItem> items(const std::vector<std::string>& relative) const
    {
        std::vector<FileURL> urls;
        for (const std::string& path : relative)
            urls.emplace_back(tree.at(path));
        return TrashItem::record(urls);
    }
    /// Until the workspace has been asked.
    void move(const std::vector<std::string>& relative)
    {
        const std::size_t count = workspace.requests.size() + 1;
        service->moveToTrash(items(relative),
                             [this](const CleanReport& report) { reports.push_back(report); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return workspace.requests.size() == count; }));
    }
    /// The report of the oldest move that is under way, let on now.
    CleanReport release()
    {
        const std::size_t count = reports.size() + 1;
        EXPECT_TRUE(workspace.releaseMove());
        EXPECT_TRUE(QTest::qWaitFor([&] { return reports.size() == count; }));
        return reports.empty() ? CleanReport{} : reports.back();
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

    // Each item itself, without what is in it or where it leads, and as it was when it
    // was asked for; given twice, it counts once.
    const std::int64_t bytes = allocated("a") + allocated("folder") + allocated("link");
    move({"missing", "a", "b\xff", "folder", "link", "a"});
    EXPECT_EQ(workspace.requests.front().size(), 6U) << "one call for all";
    move({"b\xff"});
    tree.remove("folder");
    EXPECT_TRUE(reports.empty());
    EXPECT_EQ(release(), (CleanReport{3,
                                      bytes,
                                      {"The disk is full.", "Could not move missing to Trash.",
                                       "Could not move b\xff to Trash."}}));
    workspace.error.clear();
    EXPECT_EQ(release(), (CleanReport{0, 0, {"Could not move b\xff to Trash."}}));

    service->moveToTrash({}, [this](const CleanReport& report) { reports.push_back(report); });
    EXPECT_EQ(reports.size(), 2U) << "not before the call returns";
    workspace.holdsMoves = false;
    EXPECT_TRUE(QTest::qWaitFor([this] { return reports.size() == 3; }));
    EXPECT_EQ(reports.back(), CleanReport{});
}

TEST_F(TrashServiceTest, WhoeverIsGoneHearsNothing)
{
    tree.file("a", 10'000);
    move({"a"});
    service.reset();
    ASSERT_TRUE(workspace.releaseMove());
    // Gone before the move began, there is none.
    service = std::make_unique<TrashService>(workspace);
    service->moveToTrash(items({"a"}), [this](const CleanReport& r) { reports.push_back(r); });
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
    const FileURL a(tree.at("a"));
    const FileURL b(tree.at("b"));
    const std::vector urls{b, FileURL("/System/x"), a, FileURL("/etc/fstab")};
    const TrashRequest request = TrashRequest::make(urls, 77);
    EXPECT_EQ(request.urls, (std::vector{b, a}));
    EXPECT_EQ(request.bytes, 77);
    EXPECT_EQ(request.blockedCount, 2);
    ASSERT_EQ(request.items.size(), 2U);
    EXPECT_EQ(request.items[1].url, a);
    EXPECT_EQ(request.items[1].identity->inode, inodeOf(a.path()));
    EXPECT_EQ(request.id(), b.path() + '|' + a.path());

    // What was recorded is no part of its identity.
    tree.remove("a");
    EXPECT_EQ(request, TrashRequest::make(urls, 77));
    EXPECT_NE(request, TrashRequest::make(urls, 2));
    EXPECT_FALSE(TrashRequest::make(urls, 77).items[1].identity);
}

} // namespace

} // namespace brisalon::tests
