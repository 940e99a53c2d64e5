#pragma once

#include "Brisalon/App/AppState.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// The items of the pending move to the Trash as a list of rows, in the order of the
/// selection. Rows stay when the question goes, so that one that fades away still shows
/// them, but are read no more.
///
/// Main thread. The application's model outlives it.
class TrashItemsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(brisalon::AppState* appState READ appState WRITE setAppState NOTIFY appStateChanged
                   REQUIRED)

public:
    /// The role, by its name in QML.
    enum Role {
        entry = Qt::UserRole, ///< the item as a LargeFileEntry
    };

    using QAbstractListModel::QAbstractListModel;

    AppState* appState() const { return state_; }
    void setAppState(AppState* state);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void appStateChanged();

private:
    void replaceRows();

    AppState* state_ = nullptr;
    int count_ = 0;
};

} // namespace brisalon
