#pragma once

#include "Brisalon/Map/TreemapCanvas.h"

#include <QQuickView>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brisalon::tests {

/// A child to build.
struct Child {
    std::string name;
    std::int64_t size;
    NodeKind kind = NodeKind::file;
};

/// A folder with those children, in that order, classified by their paths.
FileNodeHold folder(const std::vector<Child>& children, const std::string& path = "/home/a");

/// A folder with that many files, largest first, of sizes as a disk has them.
FileNodeHold crowdedFolder(int count);

/// A share of one colour over another.
QColor mix(const QColor& under, const QColor& over, double share);

/// A window of 1000 × 600 points with a map in it, driven by real input events.
class MapTest : public testing::Test {
protected:
    MapTest();

    /// Shows the level and waits for its picture.
    void show(const FileNodeHold& level);
    /// False if it does not come.
    bool waitForPicture();

    /// The middle of a block of the level shown, and the block with that name.
    QPoint middle(std::size_t block) const;
    std::size_t block(const std::string& name) const;
    const FileNode& node(std::size_t block) const { return level_->children()[block]; }
    QByteArray id(std::size_t block) const;

    void movePointer(QPointF point);
    void leaveWindow();
    void click(QPoint point, Qt::MouseButton button = Qt::LeftButton);
    /// What the window shows at that point (the device pixel right below it).
    QColor pixel(QPointF point);
    /// Expects the colours to differ by rounding alone.
    void expectPixel(QPointF point, const QColor& color);
    /// Expects the first blocks to look like this: "B" bright, "d" dimmed.
    void expectLook(std::string_view look);

    /// What the map has asked for since the last call: "select NAME", "zoom NAME",
    /// "menu", in order, with commas between.
    std::string requests() { return std::exchange(requests_, {}); }

    QQuickView window_;
    QQuickItem* view_ = nullptr;
    TreemapCanvas* canvas_ = nullptr;
    FileNodeHold level_;

private:
    void request(const std::string& what) { requests_ += (requests_.empty() ? "" : ", ") + what; }

    std::string requests_;
};

} // namespace brisalon::tests
