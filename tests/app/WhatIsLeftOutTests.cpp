#include "ModelFixture.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/App/WhatIsLeftOut.h"
#include "BrisalonCore/ByteFormat.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QAbstractItemModelTester>

#include <sys/stat.h>

namespace brisalon::tests {

/// Over scans that tell what the test says.
class WhatIsLeftOutTest : public ModelFixture {
protected:
    WhatIsLeftOutTest()
    {
        startOver([this](const FileURL& root, auto&&, auto&&, ScanOmissions& omissions) {
            omissions = omissions_;
            const FileURL other = root.appendingPathComponent("other");
            const FileURL back = other.appendingPathComponent("back");
            return FileNodeBuilder::make(
                root, mapped_ + 4 * mib, NodeKind::directory,
                {FileNodeBuilder::make(root.appendingPathComponent("f"), mapped_ - mib,
                                       NodeKind::file),
                 FileNodeBuilder::make(other, 5 * mib, NodeKind::directory,
                                       {FileNodeBuilder::make(other.appendingPathComponent("g"),
                                                              4 * mib, NodeKind::file),
                                        FileNodeBuilder::make(back, mib, NodeKind::file)})});
        });
        list.setAppState(state.get());
        omissions_.mounts.crossings = {{tree.at("other"), false}, {tree.at("other/back"), true}};
    }

    /// The rows of that rank as they are read: "Title: value (detail)".
    QStringList rows(WhatIsLeftOut::Rank rank) const
    {
        QStringList texts;
        for (int row = 0; row < list.rowCount(); ++row) {
            const auto text = [&](int role) { return list.index(row).data(role).toString(); };
            if (list.index(row).data(WhatIsLeftOut::rank).value<WhatIsLeftOut::Rank>() == rank)
                texts += text(WhatIsLeftOut::title) + ": " + text(WhatIsLeftOut::value) + " (" +
                         text(WhatIsLeftOut::detail).section(':', 0, 0) + ')';
        }
        return texts;
    }
    static QString size(std::int64_t bytes) { return displayText(ByteFormat::string(bytes)); }

    void answer()
    {
        scan(tree.url());
        ASSERT_TRUE(waitFor([&] { return list.rowCount() > 0; }));
    }

    std::int64_t mapped_ = 9 * mib;
    ScanOmissions omissions_;
    WhatIsLeftOut list;
    QAbstractItemModelTester tester{&list, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(WhatIsLeftOutTest, TheAmountsOfAWholeVolumeAddUp)
{
    EXPECT_EQ(list.explanation(), "Scan a folder first.");
    const std::int64_t reserved = VolumeStats::reserved(tree.url());
    const QString kept = "Kept back for the system: " + size(reserved) +
                         " (Free, but not for every user, and so counted as in use.)";
    omissions_.mounts.isWholeVolume = true;
    for (const std::int64_t mapped : {9 * mib, std::int64_t{1} << 60}) {
        mapped_ = mapped;
        answer();
        const std::int64_t used = state->volume()->used();
        const std::int64_t rest = used - mapped_ - reserved;
        // Of 9 MB too, where the temporary files have a small volume of their own.
        const bool isTooMuch = rest < 0;
        QStringList expected{"In use on the volume: " + size(used) + " ()",
                             "On the map: " + size(mapped_) + " (beside 4.0 MB on other volumes)"};
        if (reserved > 0)
            expected += kept;
        QStringList sums = rows(WhatIsLeftOut::Rank::Sum);
        EXPECT_TRUE(sums.takeLast().startsWith(
            "Not explained: " + (isTooMuch ? QString(QChar(0x2212)) + size(-rest) : size(rest))));
        EXPECT_EQ(sums.join('\n').toStdString(), expected.join('\n').toStdString());
        EXPECT_EQ(list.missingText(), used < mapped_ ? QString() : size(used - mapped_));
    }
}

TEST_F(WhatIsLeftOutTest, APartOfAVolumeIsComparedWithNothingAndItsGapsAreNamed)
{
    const auto folder = [this](const char* name, std::uint32_t mode) {
        return ScanOmissions::Folder{FileURL(tree.at(name)), mode, 0};
    };
    omissions_.unreadable = {folder("z", S_IFDIR | 0751), folder("a", 0)};
    omissions_.unreadableCount = 1003;
    omissions_.vanishedCount = 2;
    omissions_.systemAreas = {FileURL("/cores")};
    omissions_.mounts.omitted = {{"/n", "nfs4", MountReport::Reason::mayHang},
                                 {"/u", "", MountReport::Reason::elsewhere, "/m"},
                                 {tree.path(), "ext4", MountReport::Reason::behind, "", true}};
    omissions_.mounts.omittedCount = 3;
    answer();
    EXPECT_TRUE(list.explanation().contains(" is not a whole volume.\n"));
    EXPECT_EQ(list.missingText(), "");
    EXPECT_EQ(rows(WhatIsLeftOut::Rank::Sum), QStringList{"On the map: 13 MB ()"});
    EXPECT_EQ(
        rows(WhatIsLeftOut::Rank::Cause),
        (QStringList{"Folders that could not be read: 1,003 ()",
                     "Mounts that were not entered: 3 ()", "System areas that were skipped: 1 ()",
                     "Items that vanished while they were read: 2 ()"}));
    const auto here = VolumeStats::read(tree.url());
    const QString path = QString::fromStdString(tree.path());
    EXPECT_EQ(
        rows(WhatIsLeftOut::Rank::Item),
        (QStringList{path + "/a:  (not even its owner can be told)",
                     path + "/z:  (root · drwxr-x--x)", "and 1,001 more:  ()",
                     "/n:  (nfs4 · reached over a network or through a program, which may hang)",
                     "/u:  (folder · counted at /m)",
                     path + ": " + size(here->used() - VolumeStats::reserved(tree.url())) +
                         " used (ext4 · lies in a place that was not entered)",
                     "/cores:  ()"}));

    // Without a map there is no answer.
    gate.holdAfter(0);
    state->startScan(FileURL(tree.at("other")));
    EXPECT_EQ(list.rowCount(), 0);
    waitForEnd();
}

} // namespace brisalon::tests
