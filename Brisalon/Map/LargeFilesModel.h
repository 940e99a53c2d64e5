#pragma once

#include "Brisalon/App/AppStateList.h"

#include <QList>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// The largest files of the last scan as a list of rows, and what clicks and keys on
/// it do. Which files are ticked is the application's; of its own the list has a
/// current row, where the keyboard is, and an anchor, where ranges start.
///
/// Both are rows of the list as it is: when a scan replaces it, the current row stays
/// with its file, or near where that was; the anchor is dropped, as it is when nothing
/// in the list is ticked any more. Ticks of files that are listed no more stay until
/// something is ticked or cleared.
///
/// Main thread. Without the application's model, which must outlive it, it is empty.
class LargeFilesModel : public brisalon::AppStateList {
    Q_OBJECT
    QML_ELEMENT
    /// -1 for none. Announced after every replacement of the rows, too.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)

public:
    /// The roles, by their names in QML.
    enum Role {
        entry = Qt::UserRole, ///< the LargeFileEntry
        isSelected,           ///< whether it is ticked
    };

    using AppStateList::AppStateList;

    int currentRow() const { return currentRow_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// A click on a row, with the modifiers (Qt::KeyboardModifiers) that were held:
    /// without any, ticks only this row and shows its file in the map; with Ctrl,
    /// ticks or unticks it; with Shift, ticks the rows from the anchor to it and no
    /// others; with both, those in addition.
    Q_INVOKABLE void click(int row, int modifiers = 0);

    /// What a context menu for a row is about: all that is ticked when it is too, else
    /// this row, which is then ticked alone.
    Q_INVOKABLE void mean(int row);

    /// What a command's key on the list is about: what is ticked, or while nothing is, the
    /// current row, which is then ticked; never what was clicked elsewhere before.
    Q_INVOKABLE void meanCurrent();

    /// A key (Qt::Key) on the list: Up, Down, Home and End move the current row and
    /// tick it alone, with Shift the rows from the anchor to it, with Ctrl nothing;
    /// Space ticks or unticks it; Ctrl+A ticks all; Return shows the current file in
    /// the map; Escape unticks all. False for a key that means nothing here, as Escape
    /// does while nothing is ticked.
    Q_INVOKABLE bool press(int key, int modifiers = 0);

    /// The keyboard comes to the list: without a current row, the first ticked one
    /// becomes it, or else the first.
    Q_INVOKABLE void enter();

signals:
    void currentRowChanged();

private:
    void follow(AppState& state) override;
    void replaceRows();
    void updateTicks();
    /// Where the ticked files stand in the list, ascending.
    QList<int> tickedRows() const;
    /// Ticks the files of those rows and no others.
    void tick(const QList<int>& rows);
    void setCurrentRow(int row);
    void tickOnly(int row);
    void toggle(int row);
    void tickRange(int row, bool isAddition);
    void moveTo(int row, Qt::KeyboardModifiers modifiers);
    void reveal(int row);

    QList<LargeFileEntry> files_;
    /// The ticked rows, ascending.
    QList<int> ticked_;
    int currentRow_ = -1;
    int anchor_ = -1;
};

} // namespace brisalon
