// A move to the Trash, with each of its requests to the system failing once with every
// error that may come, and each of its allocations: every item is either where it was or
// in the Trash with what restores it, and the report says which.

#include "SystemFaults.h"

#include "Brisalon/Platform/DesktopWorkspace.h"
#include "Brisalon/Platform/linux/DesktopTrash.h"
#include "TrashProbe.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <system_error>

namespace brisalon::tests {

namespace {

namespace fs = std::filesystem;

constexpr std::array names{"file", "folder", "link"};

class TrashFaultTest : public testing::Test {
protected:
    /// A volume of its own, so that no trash folder of the machine is in reach.
    TemporaryTree volume{TemporaryTree::Storage::memory};

    void SetUp() override
    {
        if (!volume.isInMemory())
            GTEST_SKIP() << "needs the right to mount";
        ::setenv("XDG_DATA_HOME", volume.at("data").c_str(), 1);
        ::setenv("HOME", volume.at("home").c_str(), 1);
        volume.folder("home");
    }

    /// Everything as at the beginning: the items there, no trash yet or one in use.
    void restore(bool hasTrash) const
    {
        for (const std::string& name : namesIn(volume.path()))
            if (name != "home")
                volume.remove(name);
        volume.folder("data");
        volume.write("items/file", "text");
        volume.write("items/folder/inside", "text");
        volume.link("items/link", "file");
        if (hasTrash) {
            volume.write("data/Trash/files/file", "older");
            volume.write("data/Trash/info/file.trashinfo",
                         "[Trash Info]\nPath=/older\nDeletionDate=2026-01-01T00:00:00\n");
        }
    }

    std::vector<TrashItem> itemsToMove() const
    {
        std::vector<FileURL> urls;
        for (const char* const name : names)
            urls.emplace_back(volume.at("items/" + std::string(name)));
        return TrashItem::record(urls);
    }

    static Workspace::Recycled move(std::vector<TrashItem> items)
    {
        DesktopWorkspace workspace;
        std::optional<Workspace::Recycled> result;
        workspace.recycle(std::move(items),
                          [&](Workspace::Recycled recycled) { result = std::move(recycled); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, 10'000));
        return std::move(result).value_or(Workspace::Recycled());
    }

    /// The contents, whole, wherever they are.
    bool isWhole(const std::string& name, const std::string& path) const
    {
        if (name == "link")
            return fs::is_symlink(path) && fs::read_symlink(path) == "file";
        return contents(name == "folder" ? path + "/inside" : path) == "text";
    }

    void expectTheRule(const std::string& what, const Workspace::Recycled& result,
                       bool mayLeaveInfo, bool maySayNothing) const
    {
        std::set<std::string> moved;
        for (const auto& [source, destination] : result.moved) {
            const std::string name(source.lastPathComponent());
            moved.insert(name);
            EXPECT_TRUE(isWhole(name, destination.path())) << what << ": " << name;
            EXPECT_EQ(destination.deletingLastPathComponent().path(), volume.at("data/Trash/files"))
                << what;
            EXPECT_EQ(originOf(destination), source.path()) << what;
        }
        for (const std::string name : names) {
            const std::string path = volume.at("items/" + name);
            EXPECT_EQ(exists(path), !moved.contains(name)) << what << ": " << name;
            EXPECT_TRUE(moved.contains(name) || isWhole(name, path)) << what << ": " << name;
        }
        EXPECT_TRUE(moved.size() == names.size() || !result.error.empty() || maySayNothing) << what;
        // No information without its item, no item without, and nothing anywhere else.
        const std::string info = volume.at("data/Trash/info");
        for (const std::string& name : namesIn(info))
            EXPECT_TRUE(mayLeaveInfo ||
                        exists(volume.at("data/Trash/files/" + fs::path(name).stem().string())))
                << what << ": " << name;
        for (const std::string& name : namesIn(volume.path()))
            EXPECT_FALSE(name.starts_with(".Trash")) << what;
    }
};

TEST_F(TrashFaultTest, EveryItemIsWhereItWasOrCanBeRestored)
{
    int injected = 0;
    for (const bool hasTrash : {false, true}) {
        restore(hasTrash);
        Workspace::Recycled recycled;
        const auto requests = SystemFaults::requestsOf([&] { recycled = move(itemsToMove()); });
        expectTheRule("without a fault", recycled, false, false);
        ASSERT_EQ(recycled.moved.size(), names.size());
        for (const SystemCall& request : requests) {
            // What Qt asks of its own is none of the move's.
            if (!request.path.starts_with(volume.path()) &&
                request.path.find("mountinfo") == std::string::npos)
                continue;
            for (const int error : SystemFaults::errorsOf(request.function)) {
                // Without a folder that leads to the home trash that would lie elsewhere.
                if (error == ENOENT && request.path == volume.path())
                    continue;
                restore(hasTrash);
                const std::string what = request.function + " of " + request.path + " the " +
                                         std::to_string(request.turn + 1) +
                                         ". time: " + std::generic_category().message(error);
                if (SystemFaults::failing(request, error, [&] { recycled = move(itemsToMove()); }))
                    ++injected;
                // Of an item that is not there, or not what it was, there is nothing more
                // to say.
                const bool isOfItem = !request.path.starts_with(volume.at("data"));
                expectTheRule(what, recycled, request.function == "unlinkat",
                              error == ENOENT || error == ELOOP || isOfItem);
                if (recycled.moved.empty() && !hasTrash && request.function != "unlinkat") {
                    EXPECT_FALSE(exists(volume.at("data/Trash"))) << what << " leaves a trash";
                }
            }
        }
    }
    RecordProperty("faults", injected);
    EXPECT_GT(injected, 100);
}

TEST_F(TrashFaultTest, WithoutMemoryToo)
{
    std::size_t moved = 0;
    for (const bool hasTrash : {false, true}) {
        restore(hasTrash);
        std::vector<TrashItem> items = itemsToMove();
        const int count = SystemFaults::allocationsOf([&] { move(std::move(items)); });
        for (int number = 0; number < count; ++number) {
            const std::string what = "without allocation " + std::to_string(number);
            restore(hasTrash);
            items = itemsToMove();
            Workspace::Recycled recycled{.moved = {}, .error = what};
            SystemFaults::failingAllocation(number, [&] {
                try {
                    recycled = move(std::move(items));
                } catch (const std::bad_alloc&) {
                    // It has not begun.
                }
            });
            moved += recycled.moved.size();
            expectTheRule(what, recycled, false, false);
            EXPECT_TRUE(!recycled.moved.empty() || hasTrash || fs::is_empty(volume.at("data")))
                << what << " leaves a trash";
            const fs::directory_iterator left(hasTrash ? volume.at("data/Trash")
                                                       : volume.at("data"));
            EXPECT_EQ(std::count_if(begin(left), end(left),
                                    [](const fs::directory_entry& entry) {
                                        return entry.path().filename().string().starts_with(".");
                                    }),
                      0)
                << what << " leaves a journal";
        }
    }
    EXPECT_GT(moved, 100U);
}

} // namespace

} // namespace brisalon::tests
