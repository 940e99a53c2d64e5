#include "Brisalon/Map/BlockLabel.h"

#include "BrisalonCore/FileNodeBuilder.h"

#include <gtest/gtest.h>

using namespace brisalon;

namespace {

FileNode file(const std::string& name)
{
    return FileNodeBuilder::make(FileURL("/r/" + name), 5'000'000'000, NodeKind::file);
}

QStringList textsOf(const FileNode& node, const QRectF& cell)
{
    QStringList texts;
    for (const LabelLine& line : BlockLabel::lines(node, cell))
        texts.append(line.text);
    return texts;
}

QStringList textsOf(const FileNode& node, double width, double height)
{
    return textsOf(node, QRectF(0, 0, width, height));
}

} // namespace

TEST(BlockLabelTest, TheCellDecidesWhichLinesThereAre)
{
    const FileNode hog = file("a.iso");
    EXPECT_EQ(textsOf(hog, 64, 60), QStringList());
    EXPECT_EQ(textsOf(hog, 65, 28), QStringList());
    EXPECT_EQ(textsOf(hog, 65, 29), QStringList({"a.iso"}));
    EXPECT_EQ(textsOf(hog, 65, 44), QStringList({"a.iso"}));
    EXPECT_EQ(textsOf(hog, 65, 45), QStringList({"a.iso", "4.7 GB"}));
    EXPECT_EQ(textsOf(hog, 65, 58), QStringList({"a.iso", "4.7 GB"}));
    EXPECT_EQ(textsOf(hog, 65, 59), QStringList({"a.iso", "4.7 GB", "Installer"}));
    EXPECT_EQ(textsOf(file("a.txt"), 65, 59), QStringList({"a.txt", "4.7 GB"}));
}

TEST(BlockLabelTest, LongNamesAreWrappedAndCutWithAnEllipsis)
{
    const FileNode node = file("holiday_in_the_mountains_2024.mov");
    const QStringList roomy = textsOf(node, 100, 200);
    ASSERT_GT(roomy.size(), 2);
    EXPECT_EQ(roomy.mid(0, roomy.size() - 1).join(""), "holiday_in_the_mountains_2024.mov");
    EXPECT_EQ(roomy.first().back(), u'_') << "lines should end at the punctuation of names";
    EXPECT_EQ(roomy.last(), "4.7 GB");

    const QStringList tight = textsOf(node, 100, 41);
    ASSERT_EQ(tight.size(), 2);
    EXPECT_EQ(tight[0], roomy[0]);
    EXPECT_TRUE(tight[1].endsWith(u'…')) << tight[1].toStdString();

    struct Row {
        const char* name;
        QStringList lines;
    };
    const Row rows[] = {
        {"name-of-image-6.1.0.tar.gz", {"name-of-", "image-6.1.0.tar", ".gz", "4.7 GB"}},
        {"libSomething.so.6.4", {"libSomething", ".so.6.4", "4.7 GB"}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(textsOf(file(row.name), 96, 200), row.lines) << row.name;

    // A word without any place to break is broken where the width ends.
    const QStringList solid = textsOf(file(std::string(60, 'm')), 80, 300);
    EXPECT_EQ(solid.mid(0, solid.size() - 1).join(""), QString(60, u'm'));
}

TEST(BlockLabelTest, EveryNameHasAReadableText)
{
    EXPECT_EQ(textsOf(file("\xff bad \xe9"), 300, 40), QStringList({"\ufffd bad \ufffd"}));
    EXPECT_EQ(textsOf(file("two\nlines\x01"), 300, 40).size(), 1);
    EXPECT_FALSE(textsOf(file(std::string(255, 'x')), 70, 60).isEmpty());
}

TEST(BlockLabelTest, StaysInsideItsCell)
{
    const std::string names[] = {"a.iso", "a rather long name with spaces.iso",
                                 std::string(255, 'w')};
    for (const std::string& name : names) {
        for (double size = 65; size < 300; size += 7) {
            const QRectF cell(123.4, 56.7, size, size * 0.7);
            const QRectF box = cell.adjusted(8, 7, -8, -7);
            for (const LabelLine& line : BlockLabel::lines(file(name), cell)) {
                EXPECT_GE(line.baseline.x(), box.left());
                EXPECT_LE(line.baseline.x() + line.width, box.right() + 0.5)
                    << line.text.toStdString();
                EXPECT_GT(line.baseline.y(), box.top() + 5);
                EXPECT_LT(line.baseline.y(), box.bottom());
            }
        }
    }

    // Nothing is painted outside either.
    MapLayers layers{QImage(400, 300, QImage::Format_RGB32),
                     QImage(400, 300, QImage::Format_RGB32)};
    layers.bright.fill(Qt::red);
    layers.dimmed.fill(Qt::red);
    const QRectF cell(100, 80, 90, 60);
    BlockLabel::paint(BlockLabel::lines(file(names[1]), cell), layers, 1);
    EXPECT_EQ(layers.bright, layers.dimmed);
    int painted = 0;
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 400; ++x) {
            if (layers.bright.pixelColor(x, y) == QColor(Qt::red))
                continue;
            ++painted;
            EXPECT_TRUE(cell.contains(x, y)) << x << ", " << y;
        }
    }
    EXPECT_GT(painted, 200);
}
