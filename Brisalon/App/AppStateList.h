#pragma once

#include "Brisalon/App/AppState.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// Rows made of what the application's model holds. Main thread. Without that model,
/// which must outlive it, a list is empty.
///
/// A list names it as brisalon::AppStateList: Qt 6.4 looks for a base class by the words
/// that stand there, and QML's checker would miss the property.
class AppStateList : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(brisalon::AppState* appState READ appState WRITE setAppState NOTIFY appStateChanged
                   REQUIRED)

public:
    using QAbstractListModel::QAbstractListModel;

    AppState* appState() const { return state_; }
    void setAppState(AppState* state);

signals:
    void appStateChanged();

protected:
    /// The model is another one: connects to what the rows are made of, and makes them.
    virtual void follow(AppState& state) = 0;

private:
    AppState* state_ = nullptr;
};

} // namespace brisalon
