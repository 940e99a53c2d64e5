#pragma once

#include "BrisalonCore/FileNode.h"

#include <QPoint>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

#include <functional>
#include <optional>

namespace brisalon {

/// A user's eyes and hands on the window: finds items by their object name and
/// sends the window the events of a mouse and a keyboard. An item counts only
/// while it is visible. Main thread, with Qt's event loop between its steps.
class WindowDriver {
public:
    /// The window outlives the driver.
    explicit WindowDriver(QQuickWindow& window) : window_(window) {}

    /// The visible item of that name, or else that shows that text, or null; in the
    /// item of another name or anywhere.
    QQuickItem* find(const QString& nameOrText, const QString& in = {}) const;
    /// A property of that item; invalid without the item.
    QVariant property(const QString& objectName, const char* name) const;

    /// Lets events be handled until the condition holds; false when it does not
    /// within a generous time.
    static bool waitFor(const std::function<bool()>& condition);
    /// Waits until the map shows the current level, painted at its size, with no
    /// animation of levels running.
    bool waitForMap() const;

    /// Waits until what has changed is laid out and drawn; false when no frame comes.
    bool settle() const;

    /// Where it is in the window; nowhere without one.
    QRectF box(const QString& nameOrText, const QString& in = {}) const;
    /// Its middle; the window's corner without one.
    QPoint centre(const QString& objectName) const;
    /// The middle of the largest block of the map whose node is accepted, in the
    /// window; nothing when there is none.
    std::optional<QPoint> block(const std::function<bool(const FileNode&)>& isAccepted = {}) const;

    void hover(QPoint point);
    void click(QPoint point, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void doubleClick(QPoint point);
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

private:
    QQuickWindow& window_;
};

} // namespace brisalon
