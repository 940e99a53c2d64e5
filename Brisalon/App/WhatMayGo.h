#pragma once

#include "Brisalon/App/AppStateList.h"
#include "Brisalon/Platform/NewestTask.h"
#include "BrisalonCore/HogSummary.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace brisalon {

/// What the hogs of one kind take together, for QML (value type `hogSum`).
class HogSumValue {
    Q_GADGET
    QML_VALUE_TYPE(hogSum)
    QML_FOREIGN(brisalon::HogSum)
    QML_EXTENDED(brisalon::HogSumValue)

    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)
    Q_PROPERTY(QString placesText READ placesText CONSTANT)
    Q_PROPERTY(brisalon::LargeFileEntry largest READ largest CONSTANT)
    Q_PROPERTY(QString spokenText READ spokenText CONSTANT)

public:
    QString sizeText() const;
    /// "7 places": all that there are, though only the largest are listed.
    QString placesText() const;
    /// The first of its places, whose kind and risk are those of all.
    LargeFileEntry largest() const { return sum_.places.front(); }
    /// All of it and the advice in one line, for those who hear it.
    QString spokenText() const;

private:
    HogSum sum_;
};

/// What of the map is of a kind that may be cleared, as rows: the largest places of each
/// kind, one kind after the other, the one that takes the most first.
///
/// Summed up in the background from the tree that the application shows, as soon as it
/// shows one; empty until then and from the moment that the tree is replaced. Main thread.
/// Without the application's model, which must outlive it, it is empty.
class WhatMayGo : public brisalon::AppStateList {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString safeText READ safeText NOTIFY summedUp)
    Q_PROPERTY(QString explanation READ explanation NOTIFY summedUp)

public:
    /// The roles, by their names in QML.
    enum Role {
        entry = Qt::UserRole, ///< the place, a LargeFileEntry
        sum,                  ///< of its kind, a HogSum
        isFirst,              ///< of its kind
    };

    using AppStateList::AppStateList;

    /// The bytes that may go without a second thought; empty when there are none.
    QString safeText() const;
    /// What is listed, or why nothing is.
    QString explanation() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Shows the place of that row on the map, selected alone.
    Q_INVOKABLE void show(int row);

signals:
    void summedUp();

private:
    struct Row {
        std::size_t sum;
        std::size_t place;
    };

    void follow(AppState& state) override;
    void sumUp();
    void setSums(std::optional<std::vector<HogSum>> sums);
    const LargeFileEntry& place(int row) const;

    /// Nothing until they are known.
    std::optional<std::vector<HogSum>> sums_;
    std::vector<Row> rows_;
    /// Last, so that it has ended before what it hands over to goes.
    NewestTask task_;
};

} // namespace brisalon
