#include "Brisalon/Map/MapAccessible.h"

#include "Brisalon/Map/BlockAccessible.h"
#include "Brisalon/Map/TreemapCanvas.h"

#include <QQuickWindow>

#include <utility>

namespace brisalon {

namespace {

void tell(QAccessibleInterface* about, QAccessible::Event what)
{
    QAccessibleEvent event(about, what);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void MapAccessible::install()
{
    QAccessible::installFactory(&MapAccessible::make);
}

QAccessibleInterface* MapAccessible::make(const QString&, QObject* object)
{
    // Asked for every class of an object, its own first; whatever QML has derived
    // from the map, it is one.
    auto* canvas = qobject_cast<TreemapCanvas*>(object);
    return canvas ? new MapAccessible(*canvas) : nullptr;
}

MapAccessible::MapAccessible(TreemapCanvas& canvas)
    : QAccessibleObject(&canvas), level_(canvas.level()), selected_(canvas.selectedBlock())
{
    QObject::connect(&canvas, &TreemapCanvas::levelChanged, &connections_, [this] { noteLevel(); });
    QObject::connect(&canvas, &TreemapCanvas::selectedNodeChanged, &connections_,
                     [this] { noteSelection(); });
    QObject::connect(&canvas, &QQuickItem::activeFocusChanged, &connections_,
                     [this] { noteFocus(); });
}

MapAccessible::~MapAccessible()
{
    forgetBlocks();
}

TreemapCanvas* MapAccessible::canvas() const
{
    return qobject_cast<TreemapCanvas*>(object());
}

// The tree

QAccessibleInterface* MapAccessible::parent() const
{
    // Most items between the map and the window mean nothing to a reader, and have
    // no interface.
    const TreemapCanvas* map = canvas();
    for (QQuickItem* item = map ? map->parentItem() : nullptr; item; item = item->parentItem()) {
        if (QAccessibleInterface* found = QAccessible::queryAccessibleInterface(item))
            return found;
    }
    return QAccessible::queryAccessibleInterface(window());
}

QWindow* MapAccessible::window() const
{
    const TreemapCanvas* map = canvas();
    return map ? map->window() : nullptr;
}

int MapAccessible::childCount() const
{
    TreemapCanvas* map = canvas();
    return map ? static_cast<int>(map->laidOut().count()) : 0;
}

QAccessibleInterface* MapAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto [entry, isNew] = blocks_.try_emplace(index, 0);
    if (isNew)
        entry->second =
            QAccessible::registerAccessibleInterface(new BlockAccessible(*canvas(), index));
    return QAccessible::accessibleInterface(entry->second);
}

int MapAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* block = dynamic_cast<const BlockAccessible*>(child);
    return block && block->isValid() && block->parent() == this ? block->block() : -1;
}

QAccessibleInterface* MapAccessible::childAt(int x, int y) const
{
    TreemapCanvas* map = canvas();
    if (!map || !map->window())
        return nullptr;
    const QPointF point =
        map->mapFromScene(map->window()->mapFromGlobal(QPointF(x + 0.5, y + 0.5)));
    const auto block = map->laidOut().blockAt(point);
    return block ? child(static_cast<int>(*block)) : nullptr;
}

QAccessibleInterface* MapAccessible::selectedChild() const
{
    const TreemapCanvas* map = canvas();
    const auto block = map ? map->selectedBlock() : std::nullopt;
    return block ? child(static_cast<int>(*block)) : nullptr;
}

QAccessibleInterface* MapAccessible::focusChild() const
{
    const TreemapCanvas* map = canvas();
    if (!map || !map->hasActiveFocus())
        return nullptr;
    QAccessibleInterface* block = selectedChild();
    return block ? block : const_cast<MapAccessible*>(this);
}

// What it says of itself

QString MapAccessible::text(QAccessible::Text type) const
{
    const TreemapCanvas* map = canvas();
    if (!map)
        return {};
    switch (type) {
    case QAccessible::Name:
        return QStringLiteral("Map of ") + map->level().name();
    case QAccessible::Description:
        return map->selectedNode() ? BlockAccessible::describe(map->selectedNode()) : QString();
    default:
        return {};
    }
}

QRect MapAccessible::rect() const
{
    const TreemapCanvas* map = canvas();
    if (!map || !map->window())
        return {};
    const QRectF inScene = map->mapRectToScene(QRectF(QPointF(), map->size()));
    return inScene.translated(map->window()->mapToGlobal(QPointF())).toAlignedRect();
}

QAccessible::State MapAccessible::state() const
{
    QAccessible::State state;
    const TreemapCanvas* map = canvas();
    if (!map) {
        state.invalid = true;
        return state;
    }
    state.focusable = true;
    state.focused = map->hasActiveFocus() && !map->selectedBlock();
    state.disabled = !map->isEnabled();
    // A map that fades away is disabled; a reader must not meet it beside the next.
    state.invisible = !map->isVisible() || !map->isEnabled();
    return state;
}

void* MapAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList MapAccessible::actionNames() const
{
    return {setFocusAction()};
}

void MapAccessible::doAction(const QString& name)
{
    if (canvas() && name == setFocusAction())
        canvas()->forceActiveFocus(Qt::OtherFocusReason);
}

// What changes

void MapAccessible::noteLevel()
{
    if (level_ == canvas()->level())
        return;
    level_ = canvas()->level();
    forgetBlocks();
    selected_ = canvas()->selectedBlock();
    tell(this, QAccessible::NameChanged);
    tell(this, QAccessible::ObjectReorder);
    noteFocus();
}

void MapAccessible::noteSelection()
{
    // Of another level, or of another layout of the same.
    noteLevel();
    const auto now = canvas()->selectedBlock();
    if (now == selected_)
        return;
    const auto before = std::exchange(selected_, now);
    QAccessibleInterface* old = before ? child(static_cast<int>(*before)) : nullptr;
    if (old)
        tell(old, QAccessible::SelectionRemove);
    if (now)
        tell(selectedChild(), QAccessible::SelectionAdd);
    noteFocus();
}

void MapAccessible::noteFocus()
{
    if (QAccessibleInterface* focused = focusChild())
        tell(focused, QAccessible::Focus);
}

void MapAccessible::forgetBlocks()
{
    for (const auto& [block, id] : std::exchange(blocks_, {}))
        QAccessible::deleteAccessibleInterface(id);
}

} // namespace brisalon
