#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFiles.h"
#include "base/SaturatingSum.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <set>
#include <stdexcept>

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

    std::vector<ScanProgress> reports;
    ScanResult result;
};

TEST(DiskScanner, RefusesRootsThatAreNoFolders)
{
    TemporaryTree tree;
    tree.file("file");
    tree.link("dangling", "nowhere");
    tree.link("toFile", "file");
    for (const auto& [url, error] : {std::pair(FileURL(tree.at("missing")), ScanError::rootMissing),
                                     {FileURL(tree.at("dangling")), ScanError::rootMissing},
                                     {FileURL(tree.at("file/below")), ScanError::rootMissing},
                                     {FileURL(), ScanError::rootMissing},
                                     {FileURL(tree.at("file")), ScanError::notDirectory},
                                     {FileURL(tree.at("toFile")), ScanError::notDirectory}}) {
        const Scan scan(url);
        EXPECT_EQ(std::get<ScanError>(scan.result), error) << url.path();
        EXPECT_TRUE(scan.reports.empty());
    }
    EXPECT_TRUE(scanned(FileURL("/dev")).children().empty()) << "is left out of every scan";
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
    tree.file("deep/only small", 4 * kib);
    tree.file("tiny.app/Contents/binary", 4 * kib);
    tree.link("link", "exact");
    tree.file(".small-files-aggregate", 512 * kib);
    const FileNode root = scanned(tree.url(), 256 * kib);
    EXPECT_EQ(root, referenceTree(tree.path(), 256 * kib));
    EXPECT_TRUE(LargeFiles::find(tree.at("exact"), root));
    EXPECT_FALSE(LargeFiles::find(tree.at("link"), root));
    const FileNode* aggregate = LargeFiles::find(tree.at("deep/.small-files-aggregate"), root);
    ASSERT_TRUE(aggregate);
    EXPECT_EQ(aggregate->name(), "1 small files");
    EXPECT_EQ(aggregate->aggregateSources(), FileURLList({FileURL(tree.at("deep/only small"))}));
    const FileNode* package = LargeFiles::find(tree.at("tiny.app"), root);
    ASSERT_TRUE(package);
    EXPECT_TRUE(package->kind() == NodeKind::package && package->children().empty());
}

TEST(DiskScanner, AgreesWithThePlainestWalkOnRandomTrees)
{
    for (unsigned seed = 0; seed <= 6; ++seed) {
        const TemporaryTree tree(TemporaryTree::Storage::memory);
        tree.fillAtRandom(seed, seed == 0 ? 0 : 900);
        for (const std::int64_t threshold : {0 * kib, 4 * kib, 256 * kib}) {
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
    for (const char* name : {"a", "b", "c", "d", "e"})
        tree.file(name, 4 * kib);
    const auto counts = [&](std::int64_t every) {
        std::vector<std::int64_t> result;
        for (const ScanProgress& report : Scan(tree.url(), 0, every).reports)
            result.push_back(report.visitedCount);
        return result;
    };
    EXPECT_EQ(counts(0), (std::vector<std::int64_t>{0, 5}));
    EXPECT_EQ(counts(-1), (std::vector<std::int64_t>{0, 1, 2, 3, 4, 5, 5}));
    EXPECT_EQ(Scan(tree.url(), 0, 4).reports[1].bytesFound, 3 * 4 * kib)
        << "the item itself is not yet recorded";
}

TEST(DiskScanner, CancellationAndFailuresOfTheCallbackEndTheScanAtTheNextItem)
{
    TemporaryTree tree;
    constexpr std::int64_t items = 105;
    for (int i = 0; i < 100; ++i)
        tree.file("d" + std::to_string(i % 5) + "/f" + std::to_string(i), 4 * kib);

    std::stop_source before;
    before.request_stop();
    const auto never = [](const ScanProgress&) { ADD_FAILURE() << "a report"; };
    EXPECT_TRUE(std::holds_alternative<TaskCancelled>(
        DiskScanner{0, 1}.scan(tree.url(), never, before.get_token())));

    for (const std::int64_t stopAt : {std::int64_t{0}, std::int64_t{50}, items - 1, items}) {
        std::stop_source source;
        std::int64_t last = -1;
        const auto stop = [&](const std::function<void()>& way) {
            return [&, way](const ScanProgress& report) {
                last = report.visitedCount;
                if (last == stopAt)
                    way();
            };
        };
        EXPECT_THROW((void)(DiskScanner{0, 1}.scan(
                         tree.url(), stop([] { throw std::runtime_error("no more"); }))),
                     std::runtime_error);
        const ScanResult result = DiskScanner{0, 1}.scan(
            tree.url(), stop([&] { source.request_stop(); }), source.get_token());
        EXPECT_EQ(last, stopAt) << "no report after the cancellation";
        if (stopAt == items)
            EXPECT_TRUE(std::holds_alternative<FileNode>(result)) << "no further item was met";
        else
            EXPECT_EQ(std::get<ScanError>(result), ScanError::cancelled);
    }
}

TEST(DiskScanner, ATaggedFolderIsACacheWithAllBelowIt)
{
    const std::string tag = "Signature: 8a477f597d28d172789f06886806bc55";
    using enum HogKind;
    struct Row {
        const char* folder;
        std::string text; ///< of the tag; without it, what is there has been made before
        HogKind own;
        HogKind below;
    };
    const Row rows[] = {{"exact", tag, caches, caches},
                        {"longer", tag + "\n# a comment", caches, caches},
                        {"node_modules", tag, nodeModules, caches},
                        {"short", tag.substr(0, tag.size() - 1), none, none},
                        {"wrong", "signature" + tag.substr(9), none, none},
                        {"late", ' ' + tag, none, none},
                        {"folder", "", none, none},
                        {"link", "", none, none},
                        {"fifo", "", none, none},
                        {"case", "", none, none}};
    TemporaryTree tree;
    tree.write("bundle.app/CACHEDIR.TAG", tag);
    tree.folder("folder/CACHEDIR.TAG");
    tree.link("link/CACHEDIR.TAG", "../exact/CACHEDIR.TAG");
    tree.folder("fifo");
    ASSERT_EQ(::mkfifo(tree.at("fifo/CACHEDIR.TAG").c_str(), 0600), 0);
    tree.write("case/cachedir.tag", tag);
    for (const Row& row : rows) {
        const std::string folder = row.folder;
        tree.file(folder + "/deep/er/file", 300 * kib);
        tree.file(folder + "/before");
        if (!row.text.empty())
            tree.write(folder + "/CACHEDIR.TAG", row.text);
        tree.file(folder + "/after");
    }
    const FileNode root = scanned(tree.url(), 256 * kib);
    const auto kindOf = [&](const std::string& relative) {
        return LargeFiles::find(tree.at(relative), root)->hogKind();
    };
    for (const Row& row : rows) {
        const std::string folder = row.folder;
        EXPECT_EQ(kindOf(folder), row.own) << folder;
        for (const char* const inside : {"/deep", "/deep/er", "/deep/er/file"})
            EXPECT_EQ(kindOf(folder + inside), row.below) << folder;
        EXPECT_EQ(scanned(FileURL(tree.at(folder))).hogKind(), row.own) << folder;
        EXPECT_EQ(scanned(FileURL(tree.at(folder + "/deep/er"))).hogKind(), row.below) << folder;
    }
    EXPECT_EQ(kindOf("exact/.small-files-aggregate"), caches);
    EXPECT_EQ(kindOf("bundle.app"), caches);
    EXPECT_EQ(LargeFiles::find(tree.at("exact"), root)->risk(), Risk::safe);
    EXPECT_EQ(root.hogKind(), none);
}

TEST(SaturatingSum, StaysAtTheLargestNumber)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(detail::saturatingSum(most - 1, 2), most);
    EXPECT_EQ(detail::saturatingSum(most - 3, 2), most - 1);
}

} // namespace
