#pragma once

#include "Brisalon/App/AppStateList.h"
#include "Brisalon/Platform/NewestTask.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace brisalon {

/// What the volume that was scanned has in use and the map does not show, as rows to be
/// read from above: what is in use, what is mapped, what is known of the difference, and
/// last what is not explained. Of a root that is not a whole volume nothing is compared
/// with the volume; what the scan left out is listed all the same.
///
/// The amounts of a comparison add up: what is in use is what is mapped, what is kept
/// back and what is not explained.
///
/// Worked out in the background of the newest scan, anew when another has ended; empty
/// until then. Main thread. Without the application's model, which must outlive it, it is
/// empty.
class WhatIsLeftOut : public brisalon::AppStateList {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString explanation READ explanation NOTIFY workedOut)
    Q_PROPERTY(QString missingText READ missingText NOTIFY workedOut)

public:
    /// The roles, by their names in QML.
    enum Role {
        rank = Qt::UserRole, ///< a Rank
        title,
        detail, ///< may be empty
        value,  ///< may be empty
    };

    enum class Rank {
        Sum,   ///< one of the amounts that are compared
        Cause, ///< why something may be missing
        Item,  ///< a place that the cause above it names
    };
    Q_ENUM(Rank)

    struct Row {
        Rank rank = Rank::Cause;
        QString title;
        QString detail = {};
        QString value = {};
    };
    struct Answer {
        QString explanation;
        /// What the volume has in use beside what is mapped; empty without a comparison.
        QString missingText = {};
        std::vector<Row> rows = {};
    };

    using AppStateList::AppStateList;

    const QString& explanation() const { return answer_.explanation; }
    const QString& missingText() const { return answer_.missingText; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void workedOut();

private:
    void follow(AppState& state) override;
    void workOut();
    void setAnswer(Answer answer);

    Answer answer_;
    /// Last, so that it has ended before what it hands over to goes.
    NewestTask task_;
};

} // namespace brisalon
