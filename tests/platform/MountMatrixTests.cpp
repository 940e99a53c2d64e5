#include "Brisalon/Platform/linux/DesktopTrash.h"

#include "BrisalonCore/DeleteRules.h"
#include "BrisalonCore/Descriptor.h"

#include "TrashProbe.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisalon::tests {

namespace {

/// A system of mounts in a folder, and what has to come of it.
struct Row {
    const char* name;
    /// For the shell, in a memory file system that only this test sees. "mib PATH..."
    /// makes files of that size, "image TYPE POINT" a file system in the file "image",
    /// mounted from the device "$s".
    const char* commands;
    const char* root; ///< of the scan
    int total;        ///< that it finds, in MiB
    /// Items, one after the other: those with a "!" are protected, refused before the user
    /// is asked; those with a "=" are refused by the Trash, and stay; the others move.
    const char* decisions;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.name;
}

// clang-format off
const std::vector<Row> rows{
    {"AMemoryFileSystem", "mkdir m; mount -t tmpfs none m; mib m/a", "", 1, "!m m/a"},
    {"KernelData",
     "mkdir -p k/proc k/Outer.app; mount -t proc none k/proc; mount -t proc none k/Outer.app",
     "", 0, "!k/proc =k"},
    {"UserSpaceThatHangs", "mkdir -p fuse/hanging; mib a", "", 1, "!fuse/hanging =fuse"},
    {"UserSpaceThatFails", "mkdir -p fuse/dead; mib a", "", 1, "!fuse/dead =fuse"},
    {"UserSpaceThatLies", "mkdir -p fuse/lying; mib a", "", 1, "!fuse/lying =fuse"},
    {"UserSpaceThatLiesAsTheRoot", "mkdir -p fuse/lying", "fuse/lying", 6, "!fuse/lying =fuse"},
    {"BindOfAFolderBeside", "mib real/a; mkdir alias; mount --bind real alias", "", 1,
     "!alias alias/a real"},
    {"BindOfAFolderOutside", "mib real/a; mkdir -p in/alias; mount --bind real in/alias", "in", 1,
     "!in/alias =in"},
    {"BindOfAFile", "mib a; touch b; mount --bind a b", "", 1, "!b a"},
    {"BindOfWhatIsCovered",
     "mib real/h/a; mkdir alias; mount --bind real/h alias; mount -t tmpfs none real/h", "", 1,
     "!alias alias/a"},
    {"BindOfWhatIsPartlyCovered",
     "mib real/h/a real/b; mkdir alias part; mount --bind real alias; "
     "mount -t tmpfs none real/h; mount --bind alias/h part; mib real/h/c", "", 3,
     "!alias !part =real alias/b"},
    {"RecursiveBind", "mkdir -p real/in alias; mount -t tmpfs none real/in; mib real/in/a real/b; "
     "mount --rbind real alias", "", 2, "!alias/in =real"},
    {"Ancestor", "mkdir -p x/in/again; mib x/a; mount --bind x x/in/again", "x", 1,
     "!x/in/again =x/in"},
    {"WhatContainsTheRoot", "mkdir -p p/x/again; mib p/x/a p/b; mount --bind p p/x/again", "p/x", 1,
     "=p/x"},
    {"PartOfAnotherVolume",
     "mkdir v s; mount -t tmpfs none v; mib v/sub/a v/b; mount --bind v/sub s", "", 2, "!s v/sub"},
    {"AVolumeInAnAliasAlone", "mib real/a; mkdir -p real/here alias; mount --bind real alias; "
     "mount -t tmpfs none alias/here; mib alias/here/b", "", 2, "!real/here =real"},
    {"AVolumeReachedThroughAnAlias", "mkdir -p real/sub/here alias; mount --bind real alias; "
     "mount -t tmpfs none real/sub/here; mib real/sub/here/treasure", "", 1,
     "!alias/sub/here =alias/sub =real/sub real/sub/here/treasure"},
    {"AVolumeWithoutASource", "mkdir -p held/here; mount -t tmpfs '' held/here; mib held/here/a",
     "", 1, "!held/here =held held/here/a"},
    {"OddSourcesAndPlaces", "d=$(printf 'held/a b\\t\\\\\\n#x'); mkdir -p \"$d\"; "
     "mount -t tmpfs -- '- proc # ' \"$d\"; mib \"$d/a\"", "", 1, "=held"},
    {"MountsOnOneAnother", "mkdir -p held/m; mount -t proc none held/m; "
     "mount -t tmpfs none held/m; mib held/m/a; mount -t tmpfs none held/m; mib held/m/b", "", 1,
     "!held/m =held"},
    {"AHiddenMount", "mkdir -p top/held/m; mount -t proc none top/held/m; mount -t tmpfs none top; "
     "mib top/held/m/a", "", 1, "top/held/m/a top/held !top"},
    {"WhatAHiddenMountStandsOn", "mkdir -p real/held/m alias; mount --bind real alias; "
     "mount -t tmpfs none real/held/m; mount -t tmpfs none real/held", "", 0,
     "!alias/held/m !alias/held =real"},
    {"UnionOverItsOwnLayer", "mkdir d up w; mib d/a; "
     "o=lowerdir=$PWD/d,upperdir=$PWD/up,workdir=$PWD/w; mount -t overlay none -o $o d; mib d/b",
     "", 2, "!d d/a"},
    {"UnionOfWhatIsSeen", "mkdir l up w m; mib l/a; ln -s l to; "
     "o=lowerdir=$PWD/to,upperdir=$PWD/up,workdir=$PWD/w; mount -t overlay none -o $o m; mib m/b",
     "", 2, "!m m/b"},
    {"UnionOfWhatIsOutOfSight", "mkdir -p l in/up in/w in/m; mib l/a; "
     "o=lowerdir=$PWD/l,upperdir=$PWD/in/up,workdir=$PWD/in/w; mount -t overlay none -o $o in/m; "
     "mib in/m/b", "in", 2, "!in/m =in"},
    {"ImageInSight", "image ext4 v; mib v/a", "", 16, "!v v/a"},
    {"ImageOutOfSight", "image ext4 in/v; mib in/v/a", "in", 1, "!in/v =in"},
    {"TheHomeUnderAnotherName", "mkdir alias; mount --bind home alias; mib home/ann/a", "alias", 1,
     "!alias/ann !home/ann alias/ann/a"},
    {"TheSystemUnderAnotherName", "mkdir all; mount --rbind / all; mount -o remount,bind,ro all",
     "home", 0, "!all !all/etc !all/etc/passwd !all/usr !all/usr/share !all/bin !all/boot "
     "!all/home !all/root !all/opt !all/var !all/tmp"},
    {"SubvolumesBelowTheTopOne", "image btrfs t; btrfs -q subvolume create t/os; "
     "btrfs -q subvolume create t/os/@home; btrfs -q subvolume create t/@data; "
     "mkdir -p t/os/@home/ann t/plain data; mount -o subvol=os/@home $s home; "
     "mount -o subvol=@data $s data", "home", 0,
     "!t !t/os !t/os/@home !t/os/@home/ann !t/@data t/plain"},
    {"TheTopBelowTheRootsSubvolume", "image btrfs t; btrfs -q subvolume create t/@; mkdir sys; "
     "mount -o subvol=@ $s sys; mib t/other; mkdir sys/top; mount -o subvolid=5 $s sys/top; "
     "mib sys/a", "sys", 1, "!sys/top !sys/top/@"},
    {"ASubvolumeMountedTwice", "image btrfs t; btrfs -q subvolume create t/@; mkdir -p in/a in/b; "
     "mount -o subvol=@ $s in/a; mount -o subvol=@ $s in/b; mib in/a/f", "in", 1, "!in/b =in"},
};
// clang-format on

/// What a program says of an item that it lists in a folder, and what the item is: those of
/// one node are one, the top is node 1. A file has 1 MiB.
struct Lie {
    std::uint64_t folder;
    std::string_view name;
    std::uint64_t node;
    std::uint64_t inode;
    unsigned type;
    mode_t mode;
};

constexpr Lie lies[]{
    {0, "top", 1, 1, DT_DIR, S_IFDIR},
    {1, "twice", 2, 2, DT_REG, S_IFREG},
    {1, "twice", 2, 2, DT_REG, S_IFREG},
    {1, "without a number", 3, 0, DT_REG, S_IFREG},
    {1, "of the same number", 4, 2, DT_REG, S_IFREG},
    {1, "no folder", 5, 5, DT_DIR, S_IFREG},
    {1, "no file", 6, 6, DT_REG, S_IFDIR},
    {6, "inside", 7, 6, DT_REG, S_IFREG},
    {6, "around", 6, 6, DT_DIR, S_IFDIR},
    {1, "untold file", 8, 8, DT_UNKNOWN, S_IFREG},
    {1, "untold folder", 9, 6, DT_UNKNOWN, S_IFDIR},
    {9, "inside", 10, 9, DT_REG, S_IFREG},
    {9, "folder twice", 11, 1, DT_DIR, S_IFDIR},
    {9, "folder twice", 12, 1, DT_DIR, S_IFDIR},
};

/// Answers what the kernel asks (linux/fuse.h), until the file system is unmounted.
void tellLies(const Descriptor& device)
{
    std::vector<char> asked(1U << 16U);
    const auto& request = *reinterpret_cast<const fuse_in_header*>(asked.data());
    const char* const argument = asked.data() + sizeof request;
    for (;;) {
        if (::read(device.get(), asked.data(), asked.size()) < 0) {
            if (errno == ENODEV)
                return;
            continue; // the request was taken back
        }
        int error = 0;
        std::string answer;
        const auto say = [&answer](const auto& part) {
            answer.append(reinterpret_cast<const char*>(&part), sizeof part);
        };
        const auto sayStatus = [&](auto part, auto isIt) {
            const auto* const lie = std::ranges::find_if(lies, isIt);
            if (lie == std::end(lies)) {
                error = -ENOENT;
                return;
            }
            if constexpr (requires { part.nodeid; })
                part.nodeid = lie->node;
            part.attr.ino = lie->inode;
            part.attr.mode = lie->mode;
            part.attr.nlink = 1;
            part.attr.blocks = lie->mode == S_IFREG ? 2048 : 0;
            say(part);
        };
        switch (request.opcode) {
        case FUSE_INIT: // by the version, all else as it pleases
            say(std::array<unsigned, sizeof(fuse_init_out) / sizeof(unsigned)>{
                FUSE_KERNEL_VERSION, FUSE_KERNEL_MINOR_VERSION});
            break;
        case FUSE_LOOKUP:
            sayStatus(fuse_entry_out{}, [&](const Lie& lie) {
                return lie.folder == request.nodeid && lie.name == argument;
            });
            break;
        case FUSE_GETATTR:
            sayStatus(fuse_attr_out{}, [&](const Lie& lie) { return lie.node == request.nodeid; });
            break;
        case FUSE_OPENDIR:
            say(fuse_open_out{});
            break;
        case FUSE_READDIR:
            for (const Lie& lie : lies) {
                if (lie.folder != request.nodeid ||
                    reinterpret_cast<const fuse_read_in*>(argument)->offset > 0)
                    continue;
                say(std::array<std::uint64_t, 2>{lie.inode, 1});
                say(std::array{static_cast<unsigned>(lie.name.size()), lie.type});
                answer += lie.name;
                answer.resize(FUSE_DIRENT_ALIGN(answer.size()));
            }
            break;
        default:
            error = -ENOSYS;
        }
        const auto size = static_cast<unsigned>(sizeof(fuse_out_header) + answer.size());
        const fuse_out_header head{size, error, request.unique};
        answer.insert(0, reinterpret_cast<const char*>(&head), sizeof head);
        // Of what wants no answer there is none, and this fails.
        (void)!::write(device.get(), answer.data(), answer.size());
    }
}

/// No two of the nodes are one item to the program.
void expectEachOnce(const FileNode& node, std::set<std::string>& met)
{
    EXPECT_TRUE(met.insert(node.id()).second) << node.id();
    for (const FileNode& child : node.children())
        expectEachOnce(child, met);
}

class MountMatrixTest : public ::testing::TestWithParam<Row> {
protected:
    TemporaryTree tree{TemporaryTree::Storage::memory};

    /// A file system of a program: of whoever has what this returns.
    Descriptor userSpace(const std::string& point) const
    {
        Descriptor device = Descriptor::open(AT_FDCWD, "/dev/fuse", O_RDWR);
        const std::string options =
            "fd=" + std::to_string(device.get()) + ",rootmode=40000,user_id=0,group_id=0";
        EXPECT_EQ(::mount("program", tree.at(point).c_str(), "fuse.program", 0, options.c_str()), 0)
            << std::strerror(errno);
        return device;
    }

    void check(const Row& row) const
    {
        // What has no program any more fails, and what has one that does not answer hangs.
        Descriptor program;
        for (const std::string& name : namesIn(tree.at("fuse"))) {
            program = userSpace("fuse/" + name);
            if (name == "dead")
                (void)program.close();
            else if (name == "lying") // until the tree is unmounted, and with it this
                std::thread(tellLies, std::move(program)).detach();
        }

        const FileNode found = scanned(FileURL(tree.at(row.root)));
        EXPECT_EQ(found.allocatedSize() >> 20U, row.total);
        std::set<std::string> met;
        expectEachOnce(found, met);

        const DesktopTrash trash(FileURL(tree.at("data/Trash")));
        std::istringstream decisions(row.decisions);
        for (std::string item; decisions >> item;) {
            SCOPED_TRACE(item);
            const bool isProtected = item.starts_with('!');
            const bool stays = item.starts_with('=');
            const FileURL url(tree.at(item.substr(isProtected || stays ? 1 : 0)));
            EXPECT_EQ(DeleteRules().allow(url), !isProtected);
            if (isProtected)
                continue;
            const auto inode = inodeOf(url.path());
            ASSERT_NE(inode, 0U);
            const auto moved = putNow(trash, url);
            const FileURL* const destination = std::get_if<FileURL>(&moved);
            EXPECT_EQ(destination == nullptr, stays);
            EXPECT_EQ(inodeOf((destination ? *destination : url).path()), inode);
        }
    }
};

TEST_P(MountMatrixTest, TotalProtectionAndTrash)
{
    const Row& row = GetParam();
    constexpr int noImage = 77;
    const std::string commands = R"sh(
        mib() { for f; do mkdir -p "$(dirname "$f")"; head -c 1M /dev/zero >"$f"; done; }
        image() {
            PATH=$PATH:/sbin:/usr/sbin
            mkdir -p $2
            case $1 in
            ext4)
                truncate -s 16M image
                mkfs.ext4 -q -E lazy_itable_init=0,lazy_journal_init=0 image &&
                    fallocate -l 16M image ;;
            btrfs) truncate -s 128M image && mkfs.btrfs -q image >/dev/null ;;
            esac && mount -o loop image $2 && s=$(findmnt -no SOURCE $2) || exit 77
        }
    )sh" + std::string(row.commands);
    if (!tree.isInMemory())
        GTEST_SKIP() << "needs the right to mount";
    if (commands.find("fuse/") != std::string::npos && ::access("/dev/fuse", R_OK | W_OK) != 0)
        GTEST_SKIP() << "needs FUSE";
    tree.folder("home/ann");
    tree.write("commands", commands);
    const int status = std::system(("cd " + tree.path() + " && sh -e commands 2>errors").c_str());
    if (WEXITSTATUS(status) == noImage)
        GTEST_SKIP() << (commands.find("image btrfs") != std::string::npos ? "needs a btrfs image"
                                                                           : "needs an ext4 image");
    ASSERT_EQ(status, 0) << contents(tree.at("errors"));
    const std::string home = std::getenv("HOME");
    ::setenv("HOME", tree.at("home/ann").c_str(), 1);
    check(row);
    ::setenv("HOME", home.c_str(), 1);
}

INSTANTIATE_TEST_SUITE_P(Mounts, MountMatrixTest, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(MountMatrix, OfMountsAtRandomEachFileThatIsSeenCountsOnce)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        const TemporaryTree tree(TemporaryTree::Storage::memory);
        if (!tree.isInMemory())
            GTEST_SKIP() << "needs the right to mount";
        std::mt19937 random(seed);
        const auto folder = [&](auto depth) {
            std::string path = tree.path();
            for (; depth > 0; --depth)
                path.append("/").append(1, "abc"[random() % 3]);
            std::filesystem::create_directories(path);
            return path;
        };
        for (int step = 0; step < 12; ++step) {
            const std::string shown = folder(random() % 4);
            const std::string point = folder(1 + random() % 3);
            const auto kind = random() % 4;
            if (kind > 1)
                writeText(shown + "/file" + std::to_string(step), "text");
            else
                ASSERT_EQ(::mount(shown.c_str(), point.c_str(), "tmpfs", kind ? MS_BIND : 0, ""),
                          0);
        }
        std::set<std::pair<dev_t, ino_t>> files;
        std::vector<std::string> pending{tree.path()};
        while (!pending.empty()) {
            const std::string path = pending.back();
            pending.pop_back();
            struct stat status;
            ASSERT_EQ(::lstat(path.c_str(), &status), 0);
            if (S_ISREG(status.st_mode))
                files.emplace(status.st_dev, status.st_ino);
            else
                for (const std::string& name : namesIn(path))
                    pending.push_back(path + '/' + name);
        }
        EXPECT_EQ(scanned(tree.url()).allocatedSize() / 4096, std::ssize(files));
    }
}

} // namespace

} // namespace brisalon::tests
