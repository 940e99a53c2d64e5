#include "support/WindowDriver.h"

#include "Brisalon/App/CoreValues.h"
#include "BrisalonCore/TreemapLayout.h"

#include <QSignalSpy>
#include <QTest>

namespace brisalon {

namespace {

constexpr int patience = 20'000;

QQuickItem* search(QQuickItem* item, const std::function<bool(const QQuickItem&)>& isIt)
{
    if (!item || !item->isVisible())
        return nullptr;
    if (isIt(*item))
        return item;
    // What is drawn last lies on top, and is what the user sees.
    const QList<QQuickItem*> children = item->childItems();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        if (QQuickItem* const found = search(*child, isIt))
            return found;
    }
    return nullptr;
}

} // namespace

QQuickItem* WindowDriver::find(const QString& nameOrText, const QString& in) const
{
    QQuickItem* const root = in.isEmpty() ? window_.contentItem() : find(in);
    QQuickItem* const named =
        search(root, [&](const QQuickItem& item) { return item.objectName() == nameOrText; });
    return named ? named : search(root, [&](const QQuickItem& item) {
        return item.inherits("QQuickText") && item.property("text") == nameOrText;
    });
}

QVariant WindowDriver::property(const QString& objectName, const char* name) const
{
    const QQuickItem* const item = find(objectName);
    return item ? item->property(name) : QVariant();
}

bool WindowDriver::waitFor(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, patience);
}

bool WindowDriver::waitForMap() const
{
    return waitFor([this] {
        const QQuickItem* const view = find("treemapView");
        const auto* const map = view ? view->property("map").value<QQuickItem*>() : nullptr;
        return map && map->property("upToDate").toBool() && view->opacity() == 1 &&
               view->scale() == 1;
    });
}

bool WindowDriver::settle() const
{
    QSignalSpy frames(&window_, &QQuickWindow::frameSwapped);
    window_.update();
    return frames.wait(patience);
}

QRectF WindowDriver::box(const QString& nameOrText, const QString& in) const
{
    const QQuickItem* const item = find(nameOrText, in);
    return item ? item->mapRectToScene(QRectF(QPointF(), item->size())) : QRectF();
}

QPoint WindowDriver::centre(const QString& objectName) const
{
    return box(objectName).center().toPoint();
}

std::optional<QPoint>
WindowDriver::block(const std::function<bool(const FileNode&)>& isAccepted) const
{
    const QQuickItem* const view = find("treemapView");
    if (!view)
        return std::nullopt;
    const auto level = view->property("level").value<FileNodeValue>();
    for (const TreemapRect& rect :
         TreemapLayout::layout(level->children(), view->width(), view->height())) {
        const FileNode* const node = level->child(rect.nodeID());
        if (node && (!isAccepted || isAccepted(*node)))
            return view->mapToScene(QPointF(rect.x + rect.width / 2, rect.y + rect.height / 2))
                .toPoint();
    }
    return std::nullopt;
}

void WindowDriver::hover(QPoint point)
{
    QTest::mouseMove(&window_, point);
}

void WindowDriver::click(QPoint point, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseMove(&window_, point);
    QTest::mouseClick(&window_, Qt::LeftButton, modifiers, point);
}

void WindowDriver::doubleClick(QPoint point)
{
    QTest::mouseMove(&window_, point);
    QTest::mouseDClick(&window_, Qt::LeftButton, Qt::NoModifier, point);
}

void WindowDriver::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(&window_, static_cast<Qt::Key>(key), modifiers);
}

} // namespace brisalon
