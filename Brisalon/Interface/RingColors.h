#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// The colours of the ring that shows how much of a volume is used (0 to 1), which turn
/// to a warning as it fills. A singleton in QML. No state; any thread.
class RingColors : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The two ends of the ring's gradient.
    Q_INVOKABLE static QColor from(double usedFraction);
    Q_INVOKABLE static QColor to(double usedFraction);
};

} // namespace brisalon
