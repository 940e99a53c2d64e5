#pragma once

#include "Brisalon/App/CoreValues.h"

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QPointer>

#include <cstddef>

namespace brisalon {

class TreemapCanvas;

/// What assistive technology sees of one block of a map: an item of the list that the
/// map is (MapAccessible). It can be selected, and zoomed into where it has a level
/// of its own. Main thread.
class BlockAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    BlockAccessible(TreemapCanvas& canvas, int block) : canvas_(&canvas), block_(block) {}

    /// Its position on the level.
    int block() const { return block_; }

    /// The name, kind and size of a node, and what kind of hog it is and how safe it
    /// is to remove if it is one: "Library, Folder, 12 GB, Caches, Safe".
    static QString describe(const FileNodeValue& node);

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    QString text(QAccessible::Text type) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    QString localizedActionName(const QString& name) const override;
    QString localizedActionDescription(const QString& name) const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    std::size_t position() const { return static_cast<std::size_t>(block_); }
    FileNodeValue node() const;

    QPointer<TreemapCanvas> canvas_;
    int block_;
};

} // namespace brisalon
