#include "BrisalonCore/SkipRules.h"

#include "Words.h"
#include "host/ProtectedPlaces.h"
#include "scan/PathRules.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace brisalon;
using tests::expectThat;
using tests::TemporaryTree;

namespace {

bool mayGo(const std::string& path)
{
    return SkipRules::shouldAllowDelete(FileURL(path));
}

TEST(SkipRules, PlacesThatAScanLeavesOut)
{
    expectThat(detail::isSkippedPath,
               "/dev /dev/fd /net /net/host /proc /proc/1/fd /private/var/vm "
               "/private/var/vm/sleepimage /private/var/vmstat /System /System/Library /cores "
               "/cores/core.1 /.vol/ /.vol/1/2 !/ !/.vol !/development !/network !/procs !/Systems "
               "!/system/x !/DEV !/private/var !/core !/home/dev/x !dev");
    EXPECT_FALSE(detail::isSkippedPath(""));
}

TEST(SkipRules, PlacesThatAreNeverDeleted)
{
    expectThat(detail::isProtectedPath,
               "/ /Applications /Users /Library /System /Volumes /private /opt /usr /System/x /bin "
               "/bin/ls /sbin /sbin/mount /usr/share/x /usr/local /usr/localized /Library/Apple/x "
               "/private/var/vm /private/var/vmstat !/Applications/Example.app !/Users/someone "
               "!/usr/local/bin/tool !/opt/homebrew !/Library/Caches/x !/Library/Apple "
               "!/Volumes/Backup !/system/x !/System2 !/binary !/private/var !/dev/x");
    EXPECT_TRUE(detail::isProtectedPath(""));
    const auto isProtected = [](const std::string& path) {
        return host::isProtectedPlace(path, "/data/people/ann");
    };
    expectThat(isProtected,
               "/boot /boot/vmlinuz /dev /etc /etc/passwd /etc/ssl/certs /home /lib /lib/modules "
               "/lib32/x /lib64 /lib64/ld-linux.so /libx32 /media /mnt /nix /proc /proc/1/fd /root "
               "/run /snap /srv /sys /sys/class /tmp /var /data /data/people /data/people/ann "
               "!/home/bob !/homes !/etcetera/x !/lib128 !/media/disk !/mnt/data !/root/x !/run/x "
               "!/srv/www !/tmp/x !/var/lib !/dev/x !/ETC/x !/data/people/ann/x !/data/people/an "
               "!/data/people/anna !/data/people/bob !/dat !/people");
}

TEST(SkipRules, JudgeTheNormalisedPathThatLinksLeadTo)
{
    const TemporaryTree tree;
    tree.link("devices", "/dev");
    tree.link("chain", "devices");
    tree.link("programs", "/Applications");
    // "..", taken from the text first, undoes the link rather than its target.
    EXPECT_EQ(SkipRules::standardizedPath(FileURL(tree.at("devices/..//./x/"))), tree.at("x"));
    for (const std::string& path :
         {std::string("//nowhere/../dev"), tree.at("devices"), tree.at("chain/null")})
        EXPECT_TRUE(SkipRules::shouldSkipDescending(FileURL(path))) << path;
    expectThat(mayGo, "/nowhere/x !/nowhere/..//System/./x");
    EXPECT_TRUE(mayGo(tree.at("programs/Example.app")) && !mayGo(tree.at("programs")));
    EXPECT_FALSE(mayGo(""));
}

TEST(ProtectedPlaces, TheHomeIsWhereItsLinksLead)
{
    const TemporaryTree tree;
    tree.folder("disk/ann/papers");
    tree.link("home", tree.at("disk"));
    const char* const home = std::getenv("HOME");
    const std::string before = home ? home : "";
    const auto mayGoInTree = [&](const std::string& path) { return mayGo(tree.at(path)); };
    ::setenv("HOME", tree.at("home/ann").c_str(), 1);
    expectThat(mayGoInTree, "!home/ann !disk/ann !disk !. disk/ann/papers disk/ann/missing");
    // A home that is not absolute depends on where the program started: none.
    ::setenv("HOME", std::filesystem::relative(tree.at("disk")).c_str(), 1);
    expectThat(mayGoInTree, "disk");
    ::setenv("HOME", before.c_str(), 1);
}

TEST(ProtectedPlaces, WhereLinksAtTheTopOfTheSystemLead)
{
    const TemporaryTree tree;
    tree.folder("data/opt/tool");
    tree.folder("data/conf/etc/ssl");
    tree.folder("data/other");
    tree.link("opt", "data/opt");
    tree.link("etc", "/data/./conf//etc/");
    bool isThere = false;
    // The thread has a root of its own, which ends with it.
    std::thread([&] {
        isThere = ::unshare(CLONE_FS) == 0 && ::chroot(tree.path().c_str()) == 0;
        if (isThere)
            expectThat(mayGo, "!/data/opt !/data/conf/etc !/data/conf/etc/ssl !/data/conf !/data "
                              "!/opt /data/opt/tool /opt/tool /data/other");
    }).join();
    if (!isThere)
        GTEST_SKIP() << "needs the right to change the root";
}

TEST(ProtectedPlaces, AVolumeBeyondTheLongestPath)
{
    const TemporaryTree tree(TemporaryTree::Storage::memory);
    if (!tree.isInMemory())
        GTEST_SKIP() << "needs the right to mount";
    const std::string path = tree.chain("", std::string(200, 'd'), 25);
    // Where such a path ends can only be mounted on from close by.
    const std::string half = path.substr(0, tree.path().size() + std::size_t{12} * (200 + 1));
    ASSERT_EQ(::chdir(half.c_str()), 0);
    const std::string rest = path.substr(half.size() + 1);
    EXPECT_TRUE(mayGo(path));
    ASSERT_EQ(::mount("tmpfs", rest.c_str(), "tmpfs", 0, nullptr), 0);
    EXPECT_FALSE(mayGo(path));
    EXPECT_TRUE(mayGo(path + "/x"));
    ::umount(rest.c_str());
    ASSERT_EQ(::chdir("/"), 0);
}

} // namespace
