#include "Brisalon/Map/BlockAccessible.h"

#include "Brisalon/Map/TreemapCanvas.h"

#include <QQuickWindow>

namespace brisalon {

namespace {

const QString& zoomAction()
{
    static const QString name = QStringLiteral("Zoom in");
    return name;
}

} // namespace

QString BlockAccessible::describe(const FileNodeValue& node)
{
    QStringList parts{node.name(), node.kindTitle(), node.sizeText()};
    if (node.isHog())
        parts << node.hogTitle() << node.riskTitle();
    return parts.join(QStringLiteral(", "));
}

bool BlockAccessible::isValid() const
{
    return canvas_ && position() < canvas_->laidOut().count();
}

FileNodeValue BlockAccessible::node() const
{
    return isValid() ? canvas_->laidOut().value(position()) : FileNodeValue();
}

QWindow* BlockAccessible::window() const
{
    return canvas_ ? canvas_->window() : nullptr;
}

QAccessibleInterface* BlockAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(canvas_);
}

QString BlockAccessible::text(QAccessible::Text type) const
{
    switch (type) {
    case QAccessible::Name:
        return isValid() ? describe(node()) : QString();
    case QAccessible::Help:
        return node().isHog() ? node().riskSummary() : QString();
    default:
        return {};
    }
}

QRect BlockAccessible::rect() const
{
    if (!isValid() || !canvas_->window())
        return {};
    const QRectF inScene = canvas_->mapRectToScene(canvas_->laidOut().cell(position()));
    return inScene.translated(canvas_->window()->mapToGlobal(QPointF())).toAlignedRect();
}

QAccessible::State BlockAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const bool isSelected = canvas_->selectedBlock() == position();
    state.selectable = true;
    state.selected = isSelected;
    state.focusable = true;
    state.focused = isSelected && canvas_->hasActiveFocus();
    state.disabled = !canvas_->isEnabled();
    state.invisible = !canvas_->isVisible() || !canvas_->isEnabled();
    return state;
}

void* BlockAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList BlockAccessible::actionNames() const
{
    QStringList names;
    if (!isValid() || !canvas_->isEnabled())
        return names;
    names << pressAction() << setFocusAction();
    if (canvas_->laidOut().node(position()).canZoom())
        names << zoomAction();
    return names;
}

QString BlockAccessible::localizedActionName(const QString& name) const
{
    return name == zoomAction() ? name : QAccessibleActionInterface::localizedActionName(name);
}

QString BlockAccessible::localizedActionDescription(const QString& name) const
{
    if (name == zoomAction())
        return QStringLiteral("Shows what is in it");
    if (name == pressAction())
        return QStringLiteral("Selects it");
    return QAccessibleActionInterface::localizedActionDescription(name);
}

void BlockAccessible::doAction(const QString& name)
{
    if (!actionNames().contains(name))
        return;
    // What is asked for may replace the level, and this with it.
    TreemapCanvas* canvas = canvas_;
    const FileNodeValue target = node();
    if (name == setFocusAction())
        canvas->forceActiveFocus(Qt::OtherFocusReason);
    emit canvas->selectRequested(target);
    if (name == zoomAction())
        emit canvas->zoomRequested(target);
}

QStringList BlockAccessible::keyBindingsForAction(const QString& name) const
{
    return name == zoomAction() ? QStringList(QStringLiteral("Return")) : QStringList();
}

} // namespace brisalon
