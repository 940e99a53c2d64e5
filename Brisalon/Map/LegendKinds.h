#pragma once

#include "Brisalon/App/CoreValues.h"

#include <QColor>
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <span>
#include <vector>

namespace brisalon {

/// The distinct hog kinds of these nodes but for `none`, in the order in which
/// they first occur.
std::vector<HogKind> visibleKinds(std::span<const FileNode> nodes);

/// One hog kind in the legend (value type `legendEntry`).
class LegendEntry {
    Q_GADGET
    QML_VALUE_TYPE(legendEntry)
    Q_PROPERTY(brisalon::HogKind kind MEMBER kind)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QColor color MEMBER color)

public:
    HogKind kind = HogKind::none;
    QString title;
    QColor color;

    friend bool operator==(const LegendEntry&, const LegendEntry&) = default;
};

/// The legend of a level for QML: an entry for each of the visibleKinds of its
/// children. Announced only when the entries change.
class LegendKinds : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(brisalon::FileNodeValue level READ level WRITE setLevel NOTIFY levelChanged)
    /// Of legendEntry.
    Q_PROPERTY(QVariantList entries READ entries NOTIFY entriesChanged)

public:
    using QObject::QObject;

    FileNodeValue level() const { return level_; }
    void setLevel(const FileNodeValue& level);
    QVariantList entries() const { return entries_; }

signals:
    void levelChanged();
    void entriesChanged();

private:
    FileNodeValue level_;
    QVariantList entries_;
};

} // namespace brisalon
