// What the views make of the model where that is more than showing a field.

#include "Brisalon/App/ScanTargets.h"
#include "Brisalon/App/StatusLine.h"
#include "BrisalonCore/FileNodeBuilder.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

namespace brisalon::tests {

namespace {

const FileNodeValue none;
const FileNodeHold full =
    heldTree(FileNodeBuilder::make(FileURL("/f"), 1, NodeKind::directory,
                                   {FileNodeBuilder::make(FileURL("/f/a"), 1, NodeKind::file)}));

} // namespace

TEST(StatusLineTest, TellsOfTheScanThenOfFailuresThenTheLastMessage)
{
    const ScanProgressValue progress(ScanProgress{7, "/f", 2048});
    const struct {
        bool isScanning;
        ScanProgressValue progress;
        const char* failures;
        const char* message;
        const char* text;
        bool isOfFailures;
    } rows[] = {
        {true, progress, "No.", "Scanning /f…", "Scanning · 7 items · 2.0 KB", false},
        {true, {}, "No.", "Scanning /f…", "No.", true},
        {true, {}, "", "Scanning /f…", "Scanning /f…", false},
        {false, progress, "No.", "Mapped", "No.", true},
        {false, progress, "", "Mapped", "Mapped", false},
        {false, {}, "", "", "Ready", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(StatusLine::text(row.isScanning, row.progress, row.failures, row.message),
                  row.text);
        EXPECT_EQ(StatusLine::isOfFailures(row.isScanning, row.progress, row.failures),
                  row.isOfFailures)
            << row.text;
    }
}

TEST(ScanTargetsTest, AreShownWhenTheMapIsTheirs)
{
    using Phase = ScanTargets::Phase;
    EXPECT_EQ(ScanTargets::phase(none, false), Phase::BeforeFirst);
    EXPECT_EQ(ScanTargets::phase(none, true), Phase::Scanning);
    EXPECT_EQ(ScanTargets::phase(full, true), Phase::Scanning);
    EXPECT_EQ(ScanTargets::phase(full, false), Phase::Mapped);

    TemporaryTree tree;
    tree.folder("target");
    tree.link("alias", tree.at("target"));
    const FileURL target(tree.at("target"));
    EXPECT_TRUE(ScanTargets::isShown(target, Phase::Mapped, FileURL(tree.at("alias"))));
    EXPECT_FALSE(ScanTargets::isShown(target, Phase::Scanning, target));
    EXPECT_FALSE(ScanTargets::isShown(target, Phase::BeforeFirst, target));
    EXPECT_FALSE(ScanTargets::isShown(target, Phase::Mapped, tree.url()));
}

} // namespace brisalon::tests
