#include "BrisalonCore/SkipRules.h"

#include "host/ProtectedPlaces.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace brisalon;
using host::isProtectedPlace;
using tests::TemporaryTree;

namespace {

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

TEST(ProtectedPlaces, TheFoldersThatTheSystemIsMadeOf)
{
    const char* const isProtected =
        "/boot /boot/vmlinuz /dev /etc /etc/passwd /etc/ssl/certs /home "
        "/lib /lib/modules /lib32/x /lib64 /lib64/ld-linux.so /libx32 "
        "/media /mnt /nix /proc /proc/1/fd /root /run /snap /srv /sys "
        "/sys/class /tmp /var";
    const char* const isOthers = "/home/someone/x /home/bob /homes /etcetera/x /bootleg /library "
                                 "/lib128 /libs/x /media/disk /mnt/data /root/x /run/x /srv/www "
                                 "/tmp/x /var/cache/x /var/lib /systems /dev/x /Volumes/Backup "
                                 "/ETC/x";
    for (const auto& [paths, expected] : {std::pair(isProtected, true), {isOthers, false}}) {
        std::istringstream words(paths);
        for (std::string path; words >> path;)
            EXPECT_EQ(isProtectedPlace(path, "/home/ann"), expected) << path;
    }
}

TEST(ProtectedPlaces, TheHomeFolderAndThoseAboveIt)
{
    const std::string home = "/data/people/ann";
    for (const char* path : {"/data", "/data/people", "/data/people/ann"})
        EXPECT_TRUE(isProtectedPlace(path, home)) << path;
    for (const char* path : {"/data/people/ann/x", "/data/people/an", "/data/people/anna",
                             "/data/people/bob", "/dat", "/people"})
        EXPECT_FALSE(isProtectedPlace(path, home)) << path;
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
