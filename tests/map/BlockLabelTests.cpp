#include "Brisalon/Map/BlockLabel.h"

#include "BrisalonCore/FileNodeBuilder.h"

#include <gtest/gtest.h>

namespace brisalon::tests {

namespace {

FileNode file(const std::string& name)
{
    return FileNodeBuilder::make(FileURL("/r/" + name), 5'000'000'000, NodeKind::file);
}

/// The lines of the label, with "/" between.
std::string label(const std::string& name, double width, double height)
{
    QStringList texts;
    for (const LabelLine& line : BlockLabel::lines(file(name), QRectF(0, 0, width, height)))
        texts.append(line.text);
    return texts.join('/').toStdString();
}

} // namespace

TEST(BlockLabelTest, ShowsWhatFitsInItsCell)
{
    const struct {
        std::string name;
        double width;
        double height;
        std::string label;
    } rows[] = {
        {"a.iso", 64, 60, ""},
        {"a.iso", 65, 28, ""},
        {"a.iso", 65, 29, "a.iso"},
        {"a.iso", 65, 44, "a.iso"},
        {"a.iso", 65, 45, "a.iso/4.7 GB"},
        {"a.iso", 65, 58, "a.iso/4.7 GB"},
        {"a.iso", 65, 59, "a.iso/4.7 GB/Installer"},
        {"a.txt", 65, 59, "a.txt/4.7 GB"},
        // Lines end at the punctuation of names.
        {"name-of-image-6.1.0.tar.gz", 96, 200, "name-of-/image-6.1.0.tar/.gz/4.7 GB"},
        {"libSomething.so.6.4", 96, 200, "libSomething/.so.6.4/4.7 GB"},
        {"\xff bad \xe9", 300, 40, "\ufffd bad \ufffd"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(label(row.name, row.width, row.height), row.label) << row.height;
    EXPECT_EQ(label("two\nlines\x01", 300, 40).find('/'), std::string::npos);

    // Without room for more the last line ends with an ellipsis; a word without any
    // place to break is broken where the width ends.
    const std::string tight = label("holiday_in_the_mountains_2024.mov", 100, 41);
    EXPECT_TRUE(tight.starts_with("holiday_in_") && tight.ends_with("…")) << tight;
    EXPECT_EQ(std::ranges::count(tight, '/'), 1);
    std::string solid = label(std::string(60, 'm'), 80, 300);
    std::erase(solid, '/');
    EXPECT_EQ(solid, std::string(60, 'm') + "4.7 GB");
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

} // namespace brisalon::tests
