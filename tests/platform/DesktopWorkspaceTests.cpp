#include "Brisalon/Platform/DesktopWorkspace.h"

#include "Brisalon/Services/TrashRequest.h"
#include "Brisalon/Services/TrashService.h"

#include "TrashProbe.h"
#include "support/TemporaryTree.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
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

    std::vector<FileURL> manyFiles(int count) const
    {
        tree.folder("items");
        const FileURL folder(tree.at("items"));
        std::vector<FileURL> urls;
        for (int i = 0; i < count; ++i) {
            urls.push_back(folder.appendingPathComponent("file " + std::to_string(i)));
            writeText(urls.back().path(), "");
        }
        return urls;
    }
};

TEST_F(DesktopWorkspaceTest, ThreeFilesOneOfWhichWasSwappedForALink)
{
    for (const char* name : {"one.mov", "two.mov", "three.mov"})
        tree.file(std::string("items/") + name, 300'000);
    tree.file("treasure", 10'000);
    const TrashRequest request =
        TrashRequest::make({FileURL(tree.at("items/one.mov")), FileURL(tree.at("items/two.mov")),
                            FileURL(tree.at("items/three.mov"))},
                           900'000);
    tree.remove("items/two.mov");
    tree.link("items/two.mov", tree.at("treasure"));

    const CleanReport report = move(request);
    EXPECT_EQ(report.movedCount, 2);
    EXPECT_GE(report.movedBytes, 600'000);
    EXPECT_EQ(report.failures, std::vector<std::string>{"Could not move two.mov to Trash."});
    EXPECT_EQ(namesIn(tree.at("items")), std::vector<std::string>{"two.mov"});
    EXPECT_TRUE(exists(tree.at("treasure")));
    for (const char* name : {"one.mov", "three.mov"}) {
        const auto info = restoreInfo(FileURL(tree.at(std::string("data/Trash/files/") + name)));
        ASSERT_TRUE(info) << name;
        EXPECT_EQ(info->path, tree.at(std::string("items/") + name));
    }
}

TEST_F(DesktopWorkspaceTest, WhatTheSystemSaysComesFirst)
{
    tree.file("items/inside");
    tree.file("gone");
    tree.folder("data/Trash/info");
    const TrashRequest request =
        TrashRequest::make({FileURL(tree.at("gone")), FileURL(tree.at("data")),
                            FileURL(tree.at("data/Trash/info")), FileURL(tree.at("items"))},
                           0);
    tree.remove("gone");
    // The trash cannot hold what it lies in, nor what it needs.
    const CleanReport report = move(request);
    EXPECT_EQ(report.movedCount, 1);
    EXPECT_EQ(report.failures, (std::vector<std::string>{
                                   "data: " + std::generic_category().message(EINVAL),
                                   "Could not move gone to Trash.", "Could not move data to Trash.",
                                   "Could not move info to Trash."}));
}

TEST_F(DesktopWorkspaceTest, AFolderAndWhatIsInIt)
{
    tree.file("items/inside");
    const CleanReport report = move(TrashRequest::make(
        {FileURL(tree.at("items")), FileURL(tree.at("items/inside")), FileURL(tree.at("items"))},
        0));
    EXPECT_EQ(report.movedCount, 1);
    EXPECT_EQ(report.failures, std::vector<std::string>{"Could not move inside to Trash."});
    EXPECT_TRUE(exists(tree.at("data/Trash/files/items/inside")));
}

TEST_F(DesktopWorkspaceTest, TenThousandItemsLeaveTheInterfaceAnswering)
{
    constexpr int count = 10'000;
    const std::vector<FileURL> urls = manyFiles(count);
    const TrashRequest request = TrashRequest::make(urls, 0);
    ASSERT_EQ(request.urls.size(), urls.size());

    QElapsedTimer sinceTick;
    qint64 longest = 0;
    int ticks = 0;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        longest = std::max(longest, sinceTick.restart());
        ++ticks;
    });
    QElapsedTimer whole;
    whole.start();
    sinceTick.start();
    timer.start(10);
    const CleanReport report = move(request);
    const qint64 duration = whole.elapsed();
    longest = std::max(longest, sinceTick.elapsed());
    RecordProperty("milliseconds", static_cast<int>(duration));
    RecordProperty("longestPause", static_cast<int>(longest));

    EXPECT_EQ(report.movedCount, count);
    EXPECT_TRUE(report.failures.empty());
    EXPECT_TRUE(namesIn(tree.at("items")).empty());
    EXPECT_EQ(namesIn(tree.at("data/Trash/files")).size(), std::size_t{count});
    EXPECT_EQ(namesIn(tree.at("data/Trash/info")).size(), std::size_t{count});
    // Other work on the machine stretches the pauses; doing this work here would be one
    // long pause.
    EXPECT_LT(longest, std::max<qint64>(250, duration / 2)) << duration << " ms in all";
    EXPECT_GT(ticks, 5);
}

TEST_F(DesktopWorkspaceTest, AMoveStopsWithTheProgram)
{
    constexpr std::size_t count = 10'000;
    const std::vector<FileURL> urls = manyFiles(count);
    bool isEnded = false;
    workspace->recycle(TrashItem::record(urls),
                       [&](const Workspace::Recycled&) { isEnded = true; });
    while (namesIn(tree.at("data/Trash/files")).empty()) {
    }
    workspace.reset();
    QCoreApplication::processEvents();

    EXPECT_FALSE(isEnded);
    const std::vector<std::string> moved = namesIn(tree.at("data/Trash/files"));
    EXPECT_LT(moved.size(), count);
    EXPECT_EQ(moved.size() + namesIn(tree.at("items")).size(), count) << "nothing is lost";
    EXPECT_EQ(namesIn(tree.at("data/Trash/info")).size(), moved.size());
    for (const std::string& name : moved)
        EXPECT_TRUE(restoreInfo(FileURL(tree.at("data/Trash/files/" + name)))) << name;
}

TEST_F(DesktopWorkspaceTest, WhyItemsStayIsSaid)
{
    const TemporaryTree volume(TemporaryTree::Storage::memory);
    if (!volume.isInMemory())
        GTEST_SKIP() << "needs the right to mount";
    volume.file("again");
    tree.folder("held/mounted");
    ASSERT_EQ(::mount(nullptr, volume.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(move(TrashRequest::make({FileURL(volume.at("again"))}, 0)).failures,
              (std::vector<std::string>{"again: " + std::generic_category().message(EROFS),
                                        "Could not move again to Trash."}));
    ASSERT_EQ(::mount("", tree.at("held/mounted").c_str(), "tmpfs", 0, nullptr), 0);
    EXPECT_EQ(move(TrashRequest::make({FileURL(tree.at("held"))}, 0)).failures,
              (std::vector<std::string>{"held: A volume is mounted in it",
                                        "Could not move held to Trash."}));
    ::umount(tree.at("held/mounted").c_str());
}

} // namespace

} // namespace brisalon::tests
