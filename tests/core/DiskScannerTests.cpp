#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFiles.h"
#include "base/SaturatingSum.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <limits>
#include <set>
#include <stdexcept>
#include <tuple>

#include <sys/stat.h>

using namespace brisalon;
using namespace brisalon::tests;

namespace {

constexpr std::int64_t kib = 1024;

struct Scan {
    explicit Scan(const FileURL& root, std::int64_t threshold = 256 * kib, std::int64_t every = 400)
        : result(DiskScanner{threshold, every}.scan(
              root, [this](const ScanProgress& report) { reports.push_back(report); }))
    {
    }
    const FileNode& tree() const { return std::get<FileNode>(result); }
    ScanError error() const { return std::get<ScanError>(result); }

    std::vector<ScanProgress> reports;
    ScanResult result;
};

const FileNode* find(const Scan& scan, const std::string& path)
{
    return LargeFiles::find(path, scan.tree());
}

TEST(DiskScanner, RefusesRootsThatAreNoFolders)
{
    TemporaryTree tree;
    tree.file("file");
    tree.link("dangling", "nowhere");
    tree.link("toFile", "file");
    for (const char* missing : {"missing", "dangling", "file/below"}) {
        const Scan scan(FileURL(tree.at(missing)));
        EXPECT_EQ(scan.error(), ScanError::rootMissing) << missing;
        EXPECT_TRUE(scan.reports.empty());
    }
    for (const char* notFolder : {"file", "toFile"}) {
        const Scan scan(FileURL(tree.at(notFolder)));
        EXPECT_EQ(scan.error(), ScanError::notDirectory) << notFolder;
        EXPECT_TRUE(scan.reports.empty());
    }
    EXPECT_EQ(Scan(FileURL()).error(), ScanError::rootMissing);
    EXPECT_EQ(description(ScanError::rootMissing), "That folder no longer exists.");
    EXPECT_EQ(description(ScanError::notDirectory), "Choose a folder to scan, not a file.");
    EXPECT_EQ(description(ScanError::cancelled), "Scan was cancelled.");
}

TEST(DiskScanner, EmptyFolderGivesTwoReportsAndAnEmptyRoot)
{
    TemporaryTree tree;
    const Scan scan(tree.url());
    EXPECT_EQ(scan.tree(), referenceTree(tree.path(), 1));
    EXPECT_TRUE(scan.tree().children().empty());
    EXPECT_EQ(scan.reports, (std::vector<ScanProgress>{{0, tree.path(), 0}, {0, tree.path(), 0}}));
}

TEST(DiskScanner, ScansTheTargetOfALinkedRoot)
{
    TemporaryTree tree;
    tree.file("real/file", 300 * kib);
    tree.link("link", "real");
    const Scan scan(FileURL(tree.at("link/../link/.")));
    EXPECT_EQ(scan.tree(), referenceTree(tree.at("real"), 256 * kib));
    EXPECT_EQ(scan.reports.front().currentPath, tree.at("real"));
}

TEST(DiskScanner, FoldsSmallFilesPerFolderAndNothingElse)
{
    TemporaryTree tree;
    tree.file("exact", 256 * kib);
    tree.file("below", 252 * kib);
    tree.file("deep/only small", 4 * kib);
    tree.file("tiny.app/Contents/binary", 4 * kib);
    tree.folder("empty/empty");
    tree.link("link", "exact");
    tree.file(".small-files-aggregate", 512 * kib);
    const Scan scan(tree.url());
    EXPECT_EQ(scan.tree(), referenceTree(tree.path(), 256 * kib));

    ASSERT_NE(find(scan, tree.at("exact")), nullptr);
    EXPECT_EQ(find(scan, tree.at("below")), nullptr);
    EXPECT_EQ(find(scan, tree.at("link")), nullptr);
    const FileNode* aggregate = find(scan, tree.at("deep/.small-files-aggregate"));
    ASSERT_NE(aggregate, nullptr);
    EXPECT_EQ(aggregate->name(), "1 small files");
    EXPECT_EQ(aggregate->aggregateSources(), FileURLList({FileURL(tree.at("deep/only small"))}));
    const FileNode* package = find(scan, tree.at("tiny.app"));
    ASSERT_NE(package, nullptr);
    EXPECT_EQ(package->kind(), NodeKind::package);
    EXPECT_TRUE(package->children().empty());
    ASSERT_NE(find(scan, tree.at("empty/empty")), nullptr);
    EXPECT_EQ(find(scan, tree.at("empty"))->allocatedSize(), 0);

    const Scan unfolded(tree.url(), 0);
    EXPECT_NE(find(unfolded, tree.at("below")), nullptr);
    EXPECT_EQ(unfolded.tree(), referenceTree(tree.path(), 0));
}

TEST(DiskScanner, AggregateStandsBehindSiblingsOfItsSize)
{
    TemporaryTree tree;
    for (const char* name : {"a", "b", "c"})
        tree.file(std::string("big") + name, 256 * kib);
    for (int i = 0; i < 2; ++i)
        tree.file("small" + std::to_string(i), 128 * kib);
    const Scan scan(tree.url());
    ASSERT_EQ(scan.tree().children().size(), 4u);
    EXPECT_EQ(scan.tree().children()[0].allocatedSize(), 256 * kib);
    EXPECT_EQ(scan.tree().children()[3].allocatedSize(), 256 * kib);
    EXPECT_TRUE(scan.tree().children()[3].kind().isAggregate());
}

TEST(DiskScanner, AgreesWithThePlainestWalkOnRandomTrees)
{
    for (unsigned seed = 1; seed <= 6; ++seed) {
        const TemporaryTree tree(TemporaryTree::Storage::memory);
        tree.fillAtRandom(seed, 900);
        for (const std::int64_t threshold : {0 * kib, 8 * kib, 256 * kib}) {
            const Scan scan(tree.url(), threshold, 7);
            EXPECT_EQ(scan.tree(), referenceTree(tree.path(), threshold)) << "seed " << seed;

            const std::int64_t count = referenceCount(scan.tree(), tree.path());
            const auto multiples = static_cast<std::size_t>(count / 7);
            ASSERT_EQ(scan.reports.size(), multiples + 2);
            std::set<std::string> paths;
            for (std::size_t i = 0; i <= multiples; ++i) {
                EXPECT_EQ(scan.reports[i].visitedCount, static_cast<std::int64_t>(i) * 7);
                EXPECT_LE(scan.reports[i].bytesFound, scan.reports[i + 1].bytesFound);
                const std::string& path = scan.reports[i].currentPath;
                struct stat status;
                EXPECT_TRUE(path.starts_with(tree.path()) && paths.insert(path).second &&
                            ::lstat(path.c_str(), &status) == 0)
                    << path;
            }
            EXPECT_EQ(scan.reports.back(),
                      (ScanProgress{count, tree.path(), scan.tree().allocatedSize()}));
        }
    }
}

TEST(DiskScanner, ReportsByAnyCadence)
{
    TemporaryTree tree;
    for (int i = 0; i < 10; ++i)
        tree.file("f" + std::to_string(i), 4 * kib);
    const auto counts = [&](std::int64_t every) {
        std::vector<std::int64_t> result;
        for (const ScanProgress& report : Scan(tree.url(), 0, every).reports)
            result.push_back(report.visitedCount);
        return result;
    };
    EXPECT_EQ(counts(0), (std::vector<std::int64_t>{0, 10}));
    EXPECT_EQ(counts(-1), (std::vector<std::int64_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 10}));
    EXPECT_EQ(counts(4), (std::vector<std::int64_t>{0, 4, 8, 10}));
    const Scan scan(tree.url(), 0, 4);
    EXPECT_EQ(scan.reports[1].bytesFound, 3 * 4 * kib) << "the item itself is not yet recorded";
}

TEST(DiskScanner, MeasuresAPackageWholeAsOneItem)
{
    TemporaryTree tree;
    for (int i = 0; i < 50; ++i)
        tree.file("Big.PhotosLibrary/masters/" + std::to_string(i) + "/inner.app/image", 8 * kib);
    tree.link("Big.PhotosLibrary/link", "/usr");
    tree.folder(".app"); // an extension without a stem is none
    const Scan scan(tree.url());
    EXPECT_EQ(scan.tree(), referenceTree(tree.path(), 256 * kib));
    EXPECT_EQ(scan.reports.back().visitedCount, 2);
    EXPECT_EQ(scan.reports.back().bytesFound, scan.tree().allocatedSize());
    EXPECT_GE(scan.tree().allocatedSize(), 50 * 8 * kib);
    EXPECT_EQ(find(scan, tree.at(".app"))->kind(), NodeKind::directory);
}

TEST(DiskScanner, CancellationIsNoticedAtTheNextItem)
{
    TemporaryTree tree;
    for (int i = 0; i < 100; ++i)
        tree.file("d" + std::to_string(i % 5) + "/f" + std::to_string(i), 4 * kib);
    constexpr std::int64_t items = 105;

    std::stop_source before;
    before.request_stop();
    int reports = 0;
    const auto count = [&](const ScanProgress&) { ++reports; };
    EXPECT_TRUE(std::holds_alternative<TaskCancelled>(
        DiskScanner{0, 1}.scan(tree.url(), count, before.get_token())));
    EXPECT_EQ(reports, 0);

    for (const std::int64_t stopAt : {0, 1, 50, 104, 105}) {
        std::stop_source source;
        std::int64_t last = -1;
        const ScanResult result = DiskScanner{0, 1}.scan(
            tree.url(),
            [&](const ScanProgress& report) {
                last = report.visitedCount;
                if (last == stopAt)
                    source.request_stop();
            },
            source.get_token());
        if (stopAt == items) {
            EXPECT_TRUE(std::holds_alternative<FileNode>(result)) << "no further item was met";
        } else {
            ASSERT_TRUE(std::holds_alternative<ScanError>(result)) << stopAt;
            EXPECT_EQ(std::get<ScanError>(result), ScanError::cancelled);
            EXPECT_EQ(last, stopAt) << "no report after the cancellation";
        }
    }
}

TEST(DiskScanner, CallbackFailureEndsTheScanAndReachesTheCaller)
{
    TemporaryTree tree;
    tree.fillAtRandom(99, 300);
    const auto failAt = [&](std::int64_t count) {
        return DiskScanner{0, 1}.scan(tree.url(), [=](const ScanProgress& report) {
            if (report.visitedCount == count)
                throw std::runtime_error("no more");
        });
    };
    EXPECT_THROW(failAt(0), std::runtime_error);
    EXPECT_THROW(failAt(60), std::runtime_error);
}

TEST(DiskScanner, ATaggedFolderIsACacheWithAllBelowIt)
{
    const std::string signature = "Signature: 8a477f597d28d172789f06886806bc55";
    TemporaryTree tree;
    const auto tag = [&tree](std::string_view folder, const std::string& text) {
        const std::string name = std::string(folder) + "/CACHEDIR.TAG";
        tree.file(name);
        std::ofstream(tree.at(name)) << text;
    };
    tag("exact", signature);
    tag("longer", signature + "\n# a comment");
    tag("bundle.app", signature);
    tag("node_modules", signature);
    tag("short", signature.substr(0, signature.size() - 1));
    tag("wrong", "signature" + signature.substr(9));
    tag("empty", "");
    tag("late", ' ' + signature);
    tree.folder("folder/CACHEDIR.TAG");
    tree.link("link/CACHEDIR.TAG", "../exact/CACHEDIR.TAG");
    tree.folder("fifo");
    ASSERT_EQ(::mkfifo(tree.at("fifo/CACHEDIR.TAG").c_str(), 0600), 0);
    tree.file("case/cachedir.tag");
    std::ofstream(tree.at("case/cachedir.tag")) << signature;

    using enum HogKind;
    const std::tuple<const char*, HogKind, HogKind> expected[] = {
        {"exact", caches, caches},
        {"longer", caches, caches},
        {"node_modules", nodeModules, caches},
        {"short", none, none},
        {"wrong", none, none},
        {"empty", none, none},
        {"late", none, none},
        {"folder", none, none},
        {"link", none, none},
        {"fifo", none, none},
        {"case", none, none},
    };
    for (const auto& [folder, own, below] : expected)
        tree.file(std::string(folder) + "/deep/er/file", 300 * kib);
    const Scan scan(tree.url());
    for (const auto& [folder, own, below] : expected) {
        EXPECT_EQ(find(scan, tree.at(folder))->hogKind(), own) << folder;
        EXPECT_EQ(find(scan, tree.at(folder))->risk(), risk(own)) << folder;
        for (const char* const inside : {"/deep", "/deep/er", "/deep/er/file"})
            EXPECT_EQ(find(scan, tree.at(folder) + inside)->hogKind(), below) << folder;
        EXPECT_EQ(Scan(FileURL(tree.at(folder))).tree().hogKind(), own) << folder;
        EXPECT_EQ(Scan(FileURL(tree.at(folder) + "/deep/er")).tree().hogKind(), below) << folder;
    }
    EXPECT_EQ(find(scan, tree.at("exact/.small-files-aggregate"))->hogKind(), caches);
    EXPECT_EQ(find(scan, tree.at("bundle.app"))->hogKind(), caches);
    EXPECT_EQ(find(scan, tree.path())->hogKind(), none);
}

TEST(DiskScanner, TwoScansMayRunAtOnce)
{
    TemporaryTree tree;
    tree.fillAtRandom(7, 300);
    const Scan outer(tree.url());
    std::atomic<int> same = 0;
    (void)DiskScanner{256 * kib, 100}.scan(
        tree.url(), [&](const ScanProgress&) { same += Scan(tree.url()).tree() == outer.tree(); });
    EXPECT_GE(same, 3);
}

TEST(SaturatingSum, StaysAtTheLargestNumber)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(detail::saturatingSum(most - 1, 1), most);
    EXPECT_EQ(detail::saturatingSum(most - 1, 2), most);
    EXPECT_EQ(detail::saturatingSum(2, 3), 5);
}

} // namespace
