#include "MapFixture.h"

#include "Brisalon/Map/NodeColor.h"
#include "Brisalon/Theme/Theme.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QQmlEngine>
#include <QTest>

#include <cmath>

namespace brisalon::tests {

FileNodeHold folder(const std::vector<Child>& children, const std::string& path)
{
    const FileURL url(path);
    std::vector<FileNode> nodes;
    std::int64_t sum = 0;
    for (const Child& child : children) {
        nodes.push_back(
            FileNodeBuilder::make(url.appendingPathComponent(child.name), child.size, child.kind));
        sum += child.size;
    }
    return heldTree(FileNodeBuilder::make(url, sum, NodeKind::directory, std::move(nodes)));
}

FileNodeHold crowdedFolder(int count)
{
    std::vector<Child> children;
    for (int i = 0; i < count; ++i)
        children.push_back({"file" + std::to_string(i),
                            static_cast<std::int64_t>(1e12 / std::pow(i + 1, 1.1)) + 1});
    return folder(children, "/crowded");
}

QColor mix(const QColor& under, const QColor& over, double share)
{
    const auto channel = [&](int u, int o) {
        return static_cast<int>(std::lround(u + (o - u) * share));
    };
    return QColor(channel(under.red(), over.red()), channel(under.green(), over.green()),
                  channel(under.blue(), over.blue()));
}

MapTest::MapTest()
{
    window_.engine()->addImportPath("qrc:/qt/qml");
    window_.setColor(Theme::panel());
    window_.setResizeMode(QQuickView::SizeRootObjectToView);
    window_.resize(1000, 600);
    window_.setSource(QUrl("qrc:/qt/qml/Brisalon/Map/TreemapView.qml"));
    view_ = window_.rootObject();
    canvas_ = view_->property("map").value<TreemapCanvas*>();
    QObject::connect(canvas_, &TreemapCanvas::selectRequested, [this](const FileNodeValue& node) {
        request("select " + (node ? node->name() : std::string()));
    });
    QObject::connect(canvas_, &TreemapCanvas::zoomRequested,
                     [this](const FileNodeValue& node) { request("zoom " + node->name()); });
    QObject::connect(canvas_, &TreemapCanvas::menuRequested, [this] { request("menu"); });
    window_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
}

void MapTest::show(const FileNodeHold& level)
{
    level_ = level;
    canvas_->setLevel(level);
    ASSERT_TRUE(waitForPicture());
}

bool MapTest::waitForPicture()
{
    return QTest::qWaitFor([this] { return canvas_->isUpToDate(); }, 10'000);
}

QPoint MapTest::middle(std::size_t block) const
{
    return MapLevel(level_, canvas_->size()).cell(block).center().toPoint();
}

std::size_t MapTest::block(const std::string& name) const
{
    const auto children = level_->children();
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (children[i].name() == name)
            return i;
    }
    ADD_FAILURE() << "no block " << name;
    return 0;
}

QByteArray MapTest::id(std::size_t block) const
{
    return QByteArray::fromStdString(node(block).id());
}

void MapTest::movePointer(QPointF point)
{
    QTest::mouseMove(&window_, point.toPoint());
    QTest::qWait(1);
}

void MapTest::leaveWindow()
{
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&window_, &leave);
}

void MapTest::click(QPoint point, Qt::MouseButton button)
{
    QTest::mouseClick(&window_, button, {}, point);
}

QColor MapTest::pixel(QPointF point)
{
    const QImage image = window_.grabWindow();
    return image.pixelColor((point * window_.effectiveDevicePixelRatio()).toPoint());
}

void MapTest::expectPixel(QPointF point, const QColor& color)
{
    const QColor seen = pixel(point);
    const int apart =
        std::max({std::abs(seen.red() - color.red()), std::abs(seen.green() - color.green()),
                  std::abs(seen.blue() - color.blue())});
    EXPECT_LE(apart, 2) << seen.name().toStdString() << " instead of " << color.name().toStdString()
                        << " at " << point.x() << ", " << point.y();
}

void MapTest::expectLook(std::string_view look)
{
    for (std::size_t i = 0; i < look.size(); ++i) {
        SCOPED_TRACE(i);
        // Halfway along the gradients.
        const double opacity = look[i] == 'B' ? (1.0 + 0.72) / 2 : (0.45 + 0.35) / 2;
        const QColor color = NodeColor::color(node(i).hogKind(), node(i).name());
        expectPixel(middle(i), mix(Theme::panel(), color, opacity));
    }
}

} // namespace brisalon::tests
