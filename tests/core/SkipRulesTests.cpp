#include "BrisalonCore/SkipRules.h"

#include "host/ProtectedPlaces.h"
#include "scan/PathRules.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <sstream>
#include <thread>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace brisalon;
using detail::isProtectedPath;
using detail::isSkippedPath;
using host::isProtectedPlace;
using tests::TemporaryTree;

namespace {

/// The words.
std::vector<std::string> split(const char* text)
{
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

TEST(SkipRules, PlacesThatAScanLeavesOut)
{
    for (const std::string& path :
         split("/dev /dev/fd /net /net/host /proc /proc/1/fd /private/var/vm "
               "/private/var/vm/sleepimage /private/var/vmstat /System /System/Library /cores "
               "/cores/core.1 /.vol/ /.vol/1/2"))
        EXPECT_TRUE(isSkippedPath(path)) << path;
    for (const std::string& path :
         split("/ /.vol /development /network /procs /Systems /System2 /system/x /DEV /private/var "
               "/private/var/v /core /home/dev/x /home/System dev"))
        EXPECT_FALSE(isSkippedPath(path)) << path;
    EXPECT_FALSE(isSkippedPath(""));
}

TEST(SkipRules, PlacesThatAreNeverDeleted)
{
    for (const std::string& path :
         split("/ /Applications /Users /Library /System /Volumes /private /opt /usr /System/x /bin "
               "/bin/ls /sbin /sbin/mount /usr/share/x /usr/local /usr/localized /Library/Apple/x "
               "/private/var/vm /private/var/vmstat"))
        EXPECT_TRUE(isProtectedPath(path)) << path;
    for (const std::string& path :
         split("/Applications/Example.app /Users/someone /Users/someone/x /usr/local/bin/tool "
               "/opt/homebrew /Library/Caches/x /Library/Apple /Volumes/Backup /system/x /System2 "
               "/binary /private/var /dev/x /cores/x"))
        EXPECT_FALSE(isProtectedPath(path)) << path;
    EXPECT_TRUE(isProtectedPath(""));
}

TEST(SkipRules, JudgeTheNormalisedPath)
{
    EXPECT_EQ(SkipRules::standardizedPath(FileURL("/a//b/./../c/")), "/a/c");
    EXPECT_TRUE(SkipRules::shouldSkipDescending(FileURL("//nowhere/../dev")));
    EXPECT_FALSE(SkipRules::shouldAllowDelete(FileURL("/nowhere/..//System/./x")));
    EXPECT_FALSE(SkipRules::shouldAllowDelete(FileURL()));
    EXPECT_TRUE(SkipRules::shouldAllowDelete(FileURL("/nowhere/x")));
}

TEST(SkipRules, JudgeWhatALinkLeadsTo)
{
    const TemporaryTree tree;
    tree.link("devices", "/dev");
    tree.link("chain", "devices");
    tree.link("programs", "/Applications");
    EXPECT_TRUE(SkipRules::shouldSkipDescending(FileURL(tree.at("devices"))));
    EXPECT_TRUE(SkipRules::shouldSkipDescending(FileURL(tree.at("chain/null"))));
    EXPECT_FALSE(SkipRules::shouldAllowDelete(FileURL(tree.at("programs"))));
    EXPECT_TRUE(SkipRules::shouldAllowDelete(FileURL(tree.at("programs/Example.app"))));
    // "..", taken from the text first, undoes the link rather than its target.
    EXPECT_EQ(SkipRules::standardizedPath(FileURL(tree.at("devices/../x"))), tree.at("x"));
}

/// Another home folder for as long as it lives.
class Home {
public:
    explicit Home(const std::string& path)
    {
        if (const char* const home = std::getenv("HOME"))
            before_ = home;
        ::setenv("HOME", path.c_str(), 1);
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;
    ~Home() { ::setenv("HOME", before_.c_str(), 1); }

private:
    std::string before_;
};

TEST(ProtectedPlaces, TheFoldersThatTheSystemIsMadeOfAndTheHome)
{
    for (const std::string& path :
         split("/boot /boot/vmlinuz /dev /etc /etc/passwd /etc/ssl/certs /home /lib /lib/modules "
               "/lib32/x /lib64 /lib64/ld-linux.so /libx32 /media /mnt /nix /proc /proc/1/fd /root "
               "/run /snap /srv /sys /sys/class /tmp /var /data /data/people /data/people/ann"))
        EXPECT_TRUE(isProtectedPlace(path, "/data/people/ann")) << path;
    for (const std::string& path :
         split("/home/someone/x /home/bob /homes /etcetera/x /bootleg /library /lib128 /libs/x "
               "/media/disk /mnt/data /root/x /run/x /srv/www /tmp/x /var/cache/x /var/lib "
               "/systems /dev/x /Volumes/Backup /ETC/x /data/people/ann/x /data/people/an "
               "/data/people/anna /data/people/bob /dat /people"))
        EXPECT_FALSE(isProtectedPlace(path, "/data/people/ann")) << path;
}

TEST(ProtectedPlaces, TheHomeIsWhereItsLinksLead)
{
    const TemporaryTree tree;
    tree.folder("disk/ann/papers");
    tree.link("home", tree.at("disk"));
    const Home home(tree.at("home/ann"));

    for (const char* path : {"home/ann", "disk/ann", "disk", ""})
        EXPECT_FALSE(SkipRules::shouldAllowDelete(FileURL(tree.at(path)))) << path;
    for (const char* path : {"disk/ann/papers", "disk/ann/missing"})
        EXPECT_TRUE(SkipRules::shouldAllowDelete(FileURL(tree.at(path)))) << path;

    // A home that is not absolute depends on where the program started: none.
    const Home relative("disk");
    EXPECT_TRUE(SkipRules::shouldAllowDelete(FileURL(tree.at("disk"))));
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
        if (!isThere)
            return;
        for (const char* path :
             {"/data/opt", "/data/conf/etc", "/data/conf/etc/ssl", "/data/conf", "/data", "/opt"})
            EXPECT_FALSE(SkipRules::shouldAllowDelete(FileURL(path))) << path;
        for (const char* path : {"/data/opt/tool", "/opt/tool", "/data/other"})
            EXPECT_TRUE(SkipRules::shouldAllowDelete(FileURL(path))) << path;
    }).join();
    if (!isThere)
        GTEST_SKIP() << "needs the right to mount";
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
    EXPECT_TRUE(SkipRules::shouldAllowDelete(FileURL(path)));
    ASSERT_EQ(::mount("tmpfs", rest.c_str(), "tmpfs", 0, nullptr), 0);
    EXPECT_FALSE(SkipRules::shouldAllowDelete(FileURL(path)));
    EXPECT_TRUE(SkipRules::shouldAllowDelete(FileURL(path + "/x")));
    ::umount(rest.c_str());
    ASSERT_EQ(::chdir("/"), 0);
}

} // namespace
