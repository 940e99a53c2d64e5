#pragma once

#include "Brisalon/App/CoreValues.h"

#include <QAccessibleActionInterface>
#include <QAccessibleObject>
#include <QObject>

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace brisalon {

class TreemapCanvas;

/// What assistive technology sees of a map, which is one item to the scene: a list
/// whose items are the blocks (BlockAccessible), in the order of the level. A block
/// gets its item when it is first asked for, so that a level of many thousand
/// blocks costs nothing until somebody reads it all. The items of a level go with
/// it; those that another size leaves no room for say that they are not valid.
///
/// The selected block has the focus when the map has it. Main thread; owned by Qt's
/// cache of such objects, and goes when the map goes.
class MapAccessible final : public QAccessibleObject, public QAccessibleActionInterface {
public:
    /// Makes maps known to assistive technology; may be called any number of times.
    static void install();

    explicit MapAccessible(TreemapCanvas& canvas);
    ~MapAccessible() override;

    QAccessibleInterface* parent() const override;
    QWindow* window() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

    QString text(QAccessible::Text type) const override;
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::List; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    static QAccessibleInterface* make(const QString& className, QObject* object);

    /// Null while the map is being taken apart.
    TreemapCanvas* canvas() const;
    QAccessibleInterface* selectedChild() const;
    void noteLevel();
    void noteSelection();
    void noteFocus();
    void forgetBlocks();

    /// What is known to have been told.
    FileNodeValue level_;
    std::optional<std::size_t> selected_;
    /// Those that were asked for.
    mutable std::unordered_map<int, QAccessible::Id> blocks_;
    /// The connections to the map end with this.
    QObject connections_;
};

} // namespace brisalon
