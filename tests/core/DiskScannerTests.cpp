#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFiles.h"
#include "base/SaturatingSum.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <limits>
#include <set>
#include <stdexcept>

#include <sys/stat.h>

using namespace brisalon;
using namespace brisalon::tests;

namespace {

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

TEST(DiskScanner, ScansTheTargetOfALinkAndFoldsSmallFilesPerFolder)
{
    TemporaryTree tree;
    tree.link("link", "real");
    tree.file("real/exact", 256 * kib);
    tree.file("real/deep/only small", 4 * kib);
    tree.file("real/tiny.app/Contents/binary", 4 * kib);
    tree.file("real/.small-files-aggregate", 512 * kib);
    const Scan scan(FileURL(tree.at("link/../link/.")));
    EXPECT_EQ(scan.reports.front().currentPath, tree.at("real"));
    std::int64_t count = 0;
    EXPECT_EQ(scan.tree(), referenceTree(tree.at("real"), 256 * kib, count));
    EXPECT_EQ(scan.tree().children().size(), 4U);
    const FileNode* small =
        LargeFiles::find(tree.at("real/deep/.small-files-aggregate"), scan.tree());
    ASSERT_TRUE(small);
    EXPECT_EQ(small->aggregateSources(), FileURLList({FileURL(tree.at("real/deep/only small"))}));
}

TEST(DiskScanner, AgreesWithThePlainestWalkOnRandomTrees)
{
    for (unsigned seed = 0; seed <= 6; ++seed) {
        const TemporaryTree tree(TemporaryTree::Storage::memory);
        tree.fillAtRandom(seed, seed == 0 ? 0 : 900);
        for (const std::int64_t threshold : {0 * kib, 4 * kib, 256 * kib}) {
            const Scan scan(tree.url(), threshold, 7);
            std::int64_t count = 0;
            EXPECT_EQ(scan.tree(), referenceTree(tree.path(), threshold, count)) << seed;
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
    EXPECT_EQ(Scan(tree.url(), 0, 0).reports.size(), 2U);
    EXPECT_EQ(Scan(tree.url(), 0, -1).reports.size(), 7U);
    EXPECT_EQ(Scan(tree.url(), 0, 4).reports[1].bytesFound, 3 * 4 * kib)
        << "the item itself is not yet recorded";
}

TEST(DiskScanner, CancellationAndFailuresOfTheCallbackEndTheScanAtTheNextItem)
{
    TemporaryTree tree;
    constexpr std::int64_t items = 105;
    for (int i = 0; i < 100; ++i)
        tree.file("d" + std::to_string(i % 5) + "/f" + std::to_string(i), 4 * kib);

    const DiskScanner scanner{0, 1};
    std::stop_source before;
    before.request_stop();
    const auto never = [](const ScanProgress&) { ADD_FAILURE() << "a report"; };
    EXPECT_EQ(scanner.scan(tree.url(), never, before.get_token()), ScanResult(TaskCancelled{}));

    for (const std::int64_t stopAt : {std::int64_t{0}, std::int64_t{50}, items - 1, items}) {
        std::stop_source source;
        std::int64_t last = -1;
        std::function<void()> stop = [] { throw std::runtime_error("no more"); };
        const auto report = [&](const ScanProgress& progress) {
            last = progress.visitedCount;
            if (last == stopAt)
                stop();
        };
        EXPECT_THROW((void)scanner.scan(tree.url(), report), std::runtime_error);
        stop = [&] { source.request_stop(); };
        const ScanResult result = scanner.scan(tree.url(), report, source.get_token());
        EXPECT_EQ(last, stopAt) << "no report after the cancellation";
        EXPECT_EQ(result == ScanResult(ScanError::cancelled), stopAt < items)
            << "after the last item there is nothing to cancel";
    }
}

TEST(DiskScanner, ATaggedFolderIsACacheWithAllBelowIt)
{
    const std::string tag = "Signature: 8a477f597d28d172789f06886806bc55";
    using enum HogKind;
    struct Row {
        const char* folder;
        const char* tag; ///< the command of the shell that makes it
        HogKind own;
        HogKind below;
    };
    const Row rows[] = {{"exact", "printf $tag", caches, caches},
                        {"longer", "printf $tag'\n# a comment'", caches, caches},
                        {"node_modules", "printf $tag", nodeModules, caches},
                        {"short", "printf ${tag%?}", none, none},
                        {"wrong", "printf s${tag#?}", none, none},
                        {"late", "printf '\n'$tag", none, none},
                        {"folder", "rm $to; mkdir $to", none, none},
                        {"link", "ln -sf ../exact/$to $to", none, none},
                        {"fifo", "rm $to; mkfifo $to", none, none}};
    TemporaryTree tree;
    for (const Row& row : rows) {
        const std::string folder = row.folder;
        tree.file(folder + "/deep/er/file", 300 * kib);
        tree.file(folder + "/before");
        tree.file(folder + "/CACHEDIR.TAG");
        tree.file(folder + "/after");
        const std::string commands = "IFS=; tag='" + tag + "'; to=CACHEDIR.TAG; cd '" +
                                     tree.at(folder) + "' && { " + row.tag + "; } > $to";
        ASSERT_EQ(std::system(commands.c_str()), 0);
    }
    tree.write("bundle.app/CACHEDIR.TAG", tag);
    const FileNode root = scanned(tree.url(), 256 * kib);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.folder);
        const std::string folder = tree.at(row.folder);
        EXPECT_EQ(LargeFiles::find(folder, root)->hogKind(), row.own);
        EXPECT_EQ(scanned(FileURL(folder)).hogKind(), row.own);
        EXPECT_EQ(scanned(FileURL(folder + "/deep/er")).hogKind(), row.below);
        for (const char* const inside : {"/deep", "/deep/er", "/deep/er/file"})
            EXPECT_EQ(LargeFiles::find(folder + inside, root)->hogKind(), row.below);
    }
    for (const char* const item : {"exact/.small-files-aggregate", "bundle.app"})
        EXPECT_EQ(LargeFiles::find(tree.at(item), root)->hogKind(), caches);
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
