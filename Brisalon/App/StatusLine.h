#pragma once

#include "Brisalon/App/CoreValues.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// What the status bar says: how far a scan is, else what a move to the Trash failed
/// at, else the last message. Pure functions of the model's fields, in a singleton for
/// QML; `progress` may be a steadier one than the model's.
class StatusLine : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE static QString text(bool isScanning, const brisalon::ScanProgressValue& progress,
                                    const QString& failureText, const QString& statusMessage);
    /// Whether it is about failures: many sentences in a row, with a warning beside.
    Q_INVOKABLE static bool isOfFailures(bool isScanning,
                                         const brisalon::ScanProgressValue& progress,
                                         const QString& failureText);
};

} // namespace brisalon
