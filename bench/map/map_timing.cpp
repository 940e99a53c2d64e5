// Times the map off-screen in a window of 1280 × 800 points: laying a level out,
// filling the layers, painting the whole picture, and one change of the hover from
// the pointer's move to the finished frame. Prints a row for each number of blocks;
// set QT_SCALE_FACTOR=2 for a screen of twice the pixels, QT_QPA_PLATFORM=xcb and an
// empty QT_QUICK_BACKEND for OpenGL on the display. Medians of the processor time, in
// milliseconds: that of a frame has no share of the wait for the next one.

#include "Brisalon/Map/BlockRasterizer.h"
#include "Brisalon/Map/MapPicture.h"
#include "Brisalon/Map/NodeColor.h"
#include "Brisalon/Map/TreemapCanvas.h"
#include "Brisalon/Theme/Theme.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>
#include <utility>
#include <vector>

using namespace brisalon;

namespace {

FileNodeHold levelOf(int count)
{
    std::mt19937 random(1);
    std::exponential_distribution<> distribution;
    std::vector<std::int64_t> sizes;
    for (int i = 0; i < count; ++i)
        sizes.push_back(static_cast<std::int64_t>(3e8 * std::pow(distribution(random), 2.5)) + 1);
    std::ranges::sort(sizes, std::greater());
    const FileURL folder("/level");
    std::vector<FileNode> nodes;
    for (const std::int64_t size : sizes) {
        const std::string name = "item number " + std::to_string(nodes.size());
        nodes.push_back(
            FileNodeBuilder::make(folder.appendingPathComponent(name), size, NodeKind::file));
    }
    return heldTree(FileNodeBuilder::make(folder, 0, NodeKind::directory, std::move(nodes)));
}

template <typename Work>
double median(int runs, Work work)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const std::clock_t start = std::clock();
        work();
        times.push_back(1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    std::ranges::sort(times);
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QSG_RENDER_LOOP", "basic");
    for (const auto& [name, value] :
         {std::pair{"QT_QPA_PLATFORM", "offscreen"}, {"QT_QUICK_BACKEND", "software"}}) {
        if (!qEnvironmentVariableIsSet(name))
            qputenv(name, value);
    }
    const QGuiApplication application(argc, argv);

    const QSize size(1280, 800);
    QQuickView window;
    window.engine()->addImportPath("qrc:/qt/qml");
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.resize(size);
    window.setSource(QUrl("qrc:/qt/qml/Brisalon/Map/TreemapView.qml"));
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return 1;
    auto* canvas = window.rootObject()->property("map").value<TreemapCanvas*>();
    const double ratio = window.effectiveDevicePixelRatio();
    const QRgb background = Theme::panel().rgb();

    std::printf("%7s %6s %8s %8s %8s %8s\n", "blocks", "ratio", "layout", "fill", "picture",
                "hover");
    for (const int count : {1, 200, 2'000, 20'000}) {
        const FileNodeHold value = levelOf(count);
        const auto level = std::make_shared<const MapLevel>(value, size);
        std::vector<BlockFill> fills;
        for (std::size_t block = 0; block < level->count(); ++block)
            fills.push_back(
                {level->cell(block), NodeColor::hashed(level->node(block).name()).rgb()});

        const double layout = median(21, [&] { MapLevel(value, size); });
        const double fill =
            median(21, [&] { BlockRasterizer::rasterize(fills, size, ratio, background); });
        const double picture = median(21, [&] { MapPicture::paint(level, ratio, background); });

        canvas->setLevel(value);
        if (!QTest::qWaitFor([&] { return canvas->isUpToDate(); }))
            return 1;
        // Every move reaches another block if there is one, and the tooltip goes along.
        int step = 0;
        const double hover = median(100, [&] {
            bool drawn = false;
            const auto watch =
                QObject::connect(&window, &QQuickWindow::frameSwapped, [&] { drawn = true; });
            ++step;
            QTest::mouseMove(&window,
                             QPoint(step * 607 % size.width(), step * 397 % size.height()));
            while (!drawn)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QObject::disconnect(watch);
        });
        std::printf("%7d %6g %8.2f %8.2f %8.2f %8.2f\n", count, ratio, layout, fill, picture,
                    hover);
    }
}
