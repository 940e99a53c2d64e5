#pragma once

#include "Brisalon/App/AppStateList.h"

#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// The items of the pending move to the Trash as a list of rows, in the order of the
/// selection. Rows stay when the question goes, so that one that fades away still shows
/// them, but are read no more.
///
/// Main thread. The application's model outlives it.
class TrashItemsModel : public brisalon::AppStateList {
    Q_OBJECT
    QML_ELEMENT

public:
    /// The role, by its name in QML.
    enum Role {
        entry = Qt::UserRole, ///< the item as a LargeFileEntry
    };

    using AppStateList::AppStateList;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void follow(AppState& state) override;
    void replaceRows();

    int count_ = 0;
};

} // namespace brisalon
