#pragma once

#include "Brisalon/App/CoreValues.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// What stands where the map is, or would be. A pure function of the model's fields, in
/// a singleton for QML.
class MapPlace : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    enum class Content {
        Failure,     ///< why there is no map
        EmptyFolder, ///< that there is nothing to map
        Map,
        Welcome,   ///< what can be scanned
        FirstScan, ///< how far the first map is
    };
    Q_ENUM(Content)

    /// The first that applies.
    Q_INVOKABLE static brisalon::MapPlace::Content content(const QString& scanError,
                                                           const brisalon::FileNodeValue& tree,
                                                           const brisalon::FileNodeValue& current,
                                                           bool isScanning);
};

} // namespace brisalon
