#pragma once

#include "Brisalon/App/CoreValues.h"
#include "BrisalonCore/FileURL.h"

#include <QList>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// What a scan can be started on other than a folder that the user picks, and what is
/// shown of it. A singleton in QML; its functions are pure ones of the model's fields.
class ScanTargets : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(brisalon::FileURL home READ home CONSTANT)
    Q_PROPERTY(brisalon::FileURL thisMac READ thisMac CONSTANT)

public:
    /// How far the user has come with scanning.
    enum class Phase {
        BeforeFirst, ///< there is no map, and none is being made
        Scanning,
        Mapped,
    };
    Q_ENUM(Phase)

    /// The home folder, and the root of the startup volume.
    static FileURL home();
    static FileURL thisMac() { return FileURL("/"); }

    Q_INVOKABLE static brisalon::ScanTargets::Phase phase(const brisalon::FileNodeValue& tree,
                                                          bool isScanning);
    /// The folder that is meant by what is dropped: the only thing, and a folder of this
    /// machine. Absent otherwise.
    Q_INVOKABLE static brisalon::FileURL dropped(const QList<QUrl>& addresses);
    /// Whether the map on screen is that target's.
    Q_INVOKABLE static bool isShown(const brisalon::FileURL& target,
                                    brisalon::ScanTargets::Phase phase,
                                    const brisalon::FileURL& scanRoot);
};

} // namespace brisalon
