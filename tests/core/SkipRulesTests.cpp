#include "BrisalonCore/SkipRules.h"

#include "scan/PathRules.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

using namespace brisalon;
using detail::isProtectedPath;
using detail::isSkippedPath;

namespace {

TEST(SkipRules, PlacesThatAScanLeavesOut)
{
    for (const char* path :
         {"/dev", "/dev/fd", "/net", "/net/host", "/proc", "/proc/1/fd", "/private/var/vm",
          "/private/var/vm/sleepimage", "/private/var/vmstat", "/System", "/System/Library",
          "/cores", "/cores/core.1", "/.vol/", "/.vol/1/2"})
        EXPECT_TRUE(isSkippedPath(path)) << path;
    for (const char* path : {"", "/", "/.vol", "/development", "/network", "/procs", "/Systems",
                             "/System2", "/system/x", "/DEV", "/private/var", "/private/var/v",
                             "/core", "/home/dev/x", "/home/System", "dev"})
        EXPECT_FALSE(isSkippedPath(path)) << path;
}

TEST(SkipRules, PlacesThatAreNeverDeleted)
{
    for (const char* path : {"",
                             "/",
                             "/Applications",
                             "/Users",
                             "/Library",
                             "/System",
                             "/Volumes",
                             "/private",
                             "/opt",
                             "/usr",
                             "/System/x",
                             "/bin",
                             "/bin/ls",
                             "/sbin",
                             "/sbin/mount",
                             "/usr/share/x",
                             "/usr/local",
                             "/usr/localized",
                             "/Library/Apple/x",
                             "/private/var/vm",
                             "/private/var/vmstat"})
        EXPECT_TRUE(isProtectedPath(path)) << path;
    for (const char* path :
         {"/Applications/Example.app", "/Users/someone", "/Users/someone/x", "/usr/local/bin/tool",
          "/opt/homebrew", "/Library/Caches/x", "/Library/Apple", "/Volumes/Backup", "/system/x",
          "/System2", "/binary", "/private/var", "/dev/x", "/cores/x"})
        EXPECT_FALSE(isProtectedPath(path)) << path;
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
    const tests::TemporaryTree tree;
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

} // namespace
