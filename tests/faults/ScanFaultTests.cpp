// A scan, with each of its requests to the system failing once with every error that
// may come, and each of its allocations: what could not be read is passed over, and
// nothing else is other than it is.

#include "SystemFaults.h"

#include "BrisalonCore/DiskScanner.h"
#include "support/Files.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <set>
#include <system_error>

namespace brisalon::tests {

namespace {

/// Each path of a tree with the bytes of its own; the sources of a small-files block
/// count as the files that they are, with what they have without a fault.
using Sizes = std::map<std::string, std::int64_t>;

bool isAtOrBelow(const std::string& path, const std::string& top)
{
    return path == top || path.starts_with(top + '/');
}

class ScanFaultTest : public testing::Test {
protected:
    ScanFaultTest()
    {
        tree_.file("first", 9'000);
        tree_.file("small", 10);
        tree_.file("folder/second", 30'000);
        tree_.file("folder/deep/third", 70'000);
        tree_.file("folder/deep/small", 1);
        tree_.file("Some.app/Contents/binary", 20'000);
        tree_.file("Some.app/data", 5'000);
        tree_.link("link", "folder");
        tree_.folder("empty");
        whole_ = sizes(std::get<FileNode>(scan(0)));
    }

    ScanResult scan(std::int64_t threshold) const
    {
        return DiskScanner{threshold, 0}.scan(
            tree_.url(), [](const ScanProgress&) {}, {}, &omissions_);
    }

    /// The tree's own bytes by path. Fails where a folder does not weigh what is in it;
    /// a file that failed to be measured weighs nothing.
    Sizes sizes(const FileNode& root, const std::string& failed = {}) const
    {
        Sizes result;
        std::vector<FileNode> rest{root};
        while (!rest.empty()) {
            const FileNode node = rest.back();
            rest.pop_back();
            std::int64_t inside = 0;
            for (const FileNode& child : node.children()) {
                inside += child.allocatedSize();
                rest.push_back(child);
            }
            if (node.kind().isAggregate()) {
                std::int64_t small = 0;
                std::int64_t unmeasured = 0;
                for (const FileURL& source : node.aggregateSources()) {
                    const std::int64_t size = whole_.at(source.path());
                    result[source.path()] = size;
                    small += size;
                    unmeasured = source.path() == failed ? size : unmeasured;
                }
                EXPECT_TRUE(node.allocatedSize() == small ||
                            node.allocatedSize() == small - unmeasured)
                    << node.url().path();
                continue;
            }
            const bool isLeaf = node.children().empty();
            EXPECT_TRUE(isLeaf || node.allocatedSize() == inside) << node.url().path();
            result[node.url().path()] = isLeaf ? node.allocatedSize() : 0;
        }
        return result;
    }

    /// Without a result the scan threw that error.
    void expectTheRule(const SystemCall& request, int error,
                       const std::optional<ScanResult>& result) const
    {
        const std::string what = request.function + " of " + request.path + " the " +
                                 std::to_string(request.turn + 1) +
                                 ". time: " + std::generic_category().message(error);
        const std::string root = tree_.path();
        const bool isInside = request.path.starts_with(root + '/');
        if (!result) {
            EXPECT_FALSE(isInside) << what;
            return;
        }
        if (const ScanError* const failure = std::get_if<ScanError>(&*result)) {
            EXPECT_FALSE(isInside) << what;
            EXPECT_TRUE(error == ENOENT || error == ELOOP || *failure != ScanError::rootMissing)
                << what;
            return;
        }
        const Sizes found = sizes(std::get<FileNode>(*result), request.path);
        for (const auto& [path, size] : found)
            // A package weighs what could be read of it.
            EXPECT_TRUE(whole_.contains(path) &&
                        (whole_.at(path) == size || isAtOrBelow(request.path, path)))
                << what << ": " << path << " has " << size;
        // What it may have cost: what was asked for and what is below. An interruption
        // and a want of descriptors or memory pass, and cost nothing.
        const bool isPassing = error == EINTR || error == EMFILE || error == ENFILE;
        for (const auto& [path, size] : whole_) {
            EXPECT_TRUE(found.contains(path) || (isAtOrBelow(path, request.path) && !isPassing))
                << what << ": " << path << " is missing";
        }
        const std::size_t gaps = omissions_.unreadableCount + omissions_.vanishedCount;
        // Told is what is missing, and what nobody could know to be empty.
        EXPECT_TRUE(gaps > 0 ? isAtOrBelow(request.path, root) && !isPassing : found == whole_)
            << what << ": " << gaps << " gaps";
        EXPECT_EQ(omissions_.unreadable.size(), omissions_.unreadableCount) << what;
    }

    const TemporaryTree tree_;
    mutable ScanOmissions omissions_;
    Sizes whole_;
};

TEST_F(ScanFaultTest, WhatCannotBeReadIsPassedOverAndNothingElse)
{
    int injected = 0;
    for (const std::int64_t threshold : {0, 4096}) {
        const auto requests = SystemFaults::requestsOf([&] { scan(threshold); });
        ASSERT_GT(requests.size(), 20U);
        for (const SystemCall& request : requests) {
            for (const int error : SystemFaults::errorsOf(request.function)) {
                std::optional<ScanResult> result;
                const auto body = [&] {
                    try {
                        result = scan(threshold);
                    } catch (const std::system_error& thrown) {
                        EXPECT_EQ(thrown.code().value(), error);
                    }
                };
                if (SystemFaults::failing(request, error, body))
                    ++injected;
                expectTheRule(request, error, result);
            }
        }
    }
    RecordProperty("faults", injected);
    EXPECT_GT(injected, 200);
}

TEST_F(ScanFaultTest, WithoutMemoryItThrowsAndLeavesNothingOpen)
{
    const auto before = openDescriptors();
    const int count = SystemFaults::allocationsOf([&] { scan(4096); });
    ASSERT_GT(count, 50);
    int thrown = 0;
    for (int number = 0; number < count; ++number) {
        std::optional<ScanResult> result;
        SystemFaults::failingAllocation(number, [&] {
            try {
                result = scan(4096);
            } catch (const std::bad_alloc&) {
                ++thrown;
            } catch (const std::system_error&) {
                ++thrown; // no further thread
            }
        });
        if (result) {
            ASSERT_TRUE(std::holds_alternative<FileNode>(*result)) << number;
            EXPECT_EQ(sizes(std::get<FileNode>(*result)), whole_) << number;
        }
    }
    EXPECT_GT(thrown, count / 2);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ScanCost, OfALevelIsTheSameHoweverDeep)
{
    const auto bytesPerLevel = [](int levels) {
        const TemporaryTree tree(TemporaryTree::Storage::memory);
        tree.chain("", "d", levels, 0);
        return SystemFaults::bytesAllocatedBy(
                   [&] { DiskScanner{0, 1}.scan(tree.url(), [](const ScanProgress&) {}); }) /
               static_cast<std::size_t>(levels);
    };
    EXPECT_LT(bytesPerLevel(3000), 2 * bytesPerLevel(1000));
}

} // namespace

} // namespace brisalon::tests
