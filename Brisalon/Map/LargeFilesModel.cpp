#include "Brisalon/Map/LargeFilesModel.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <utility>

namespace brisalon {

void LargeFilesModel::follow(AppState& state)
{
    connect(&state, &AppState::largeFilesChanged, this, &LargeFilesModel::replaceRows);
    connect(&state, &AppState::selectedLargeFileIDsChanged, this, &LargeFilesModel::updateTicks);
    replaceRows();
}

int LargeFilesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(files_.size());
}

QVariant LargeFilesModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case entry:
        return QVariant::fromValue(files_[index.row()]);
    case isSelected:
        return ticked_.contains(index.row());
    default:
        return {};
    }
}

QHash<int, QByteArray> LargeFilesModel::roleNames() const
{
    return {{entry, "entry"}, {isSelected, "isSelected"}};
}

void LargeFilesModel::replaceRows()
{
    const LargeFileEntry* const current = currentRow_ >= 0 ? &files_[currentRow_] : nullptr;
    const QList<LargeFileEntry> files = appState()->largeFiles();
    int row = -1;
    if (current) {
        const auto same =
            std::find_if(files.begin(), files.end(),
                         [&](const LargeFileEntry& other) { return other.url == current->url; });
        row = same != files.end() ? static_cast<int>(same - files.begin())
                                  : std::min(currentRow_, static_cast<int>(files.size()) - 1);
    }

    beginResetModel();
    files_ = files;
    ticked_ = tickedRows();
    currentRow_ = row;
    anchor_ = -1;
    endResetModel();
    emit currentRowChanged();
}

void LargeFilesModel::updateTicks()
{
    const QList<int> ticked = tickedRows();
    QList<int> changed;
    std::set_symmetric_difference(ticked_.begin(), ticked_.end(), ticked.begin(), ticked.end(),
                                  std::back_inserter(changed));
    ticked_ = ticked;
    if (ticked_.isEmpty())
        anchor_ = -1;
    for (const int row : changed)
        emit dataChanged(index(row), index(row), {isSelected});
}

QList<int> LargeFilesModel::tickedRows() const
{
    QList<int> rows;
    for (int row = 0; row < files_.size(); ++row) {
        if (appState()->selectedLargeFileIDs().contains(files_[row].id()))
            rows.append(row);
    }
    return rows;
}

void LargeFilesModel::tick(const QList<int>& rows)
{
    std::set<std::string> ids;
    for (const int row : rows)
        ids.insert(files_[row].id());
    appState()->setSelectedLargeFileIDs(std::move(ids));
}

void LargeFilesModel::setCurrentRow(int row)
{
    if (row == currentRow_)
        return;
    currentRow_ = row;
    emit currentRowChanged();
}

void LargeFilesModel::tickOnly(int row)
{
    tick({row});
    anchor_ = row;
}

void LargeFilesModel::toggle(int row)
{
    QList<int> rows = ticked_;
    if (!rows.removeOne(row))
        rows.append(row);
    tick(rows);
    anchor_ = rows.isEmpty() ? -1 : row;
}

void LargeFilesModel::tickRange(int row, bool isAddition)
{
    const int from = anchor_ >= 0 ? anchor_ : row;
    QList<int> rows = isAddition ? ticked_ : QList<int>();
    for (int each = std::min(from, row); each <= std::max(from, row); ++each)
        rows.append(each);
    tick(rows);
    anchor_ = from;
}

void LargeFilesModel::reveal(int row)
{
    // A copy, because the list may change under what is announced meanwhile.
    const LargeFileEntry file = files_[row];
    appState()->revealLargeFile(file);
}

void LargeFilesModel::click(int row, int modifiers)
{
    if (row < 0 || row >= files_.size())
        return;
    const Qt::KeyboardModifiers held(modifiers);
    setCurrentRow(row);
    if (held & Qt::ShiftModifier) {
        tickRange(row, held & Qt::ControlModifier);
    } else if (held & Qt::ControlModifier) {
        toggle(row);
    } else {
        tickOnly(row);
        reveal(row);
    }
}

void LargeFilesModel::mean(int row)
{
    if (row < 0 || row >= files_.size())
        return;
    setCurrentRow(row);
    if (!ticked_.contains(row))
        tickOnly(row);
}

void LargeFilesModel::meanCurrent()
{
    // Ticked but no longer listed is what a move has taken: the same key again would
    // hasten on to its neighbour.
    if (appState()->selectedLargeFileIDs().empty())
        mean(currentRow_);
}

void LargeFilesModel::moveTo(int row, Qt::KeyboardModifiers modifiers)
{
    const int target = std::clamp(row, 0, static_cast<int>(files_.size()) - 1);
    // Without an anchor, a range starts where the keyboard is.
    if (anchor_ < 0 && modifiers & Qt::ShiftModifier)
        anchor_ = currentRow_;
    setCurrentRow(target);
    if (modifiers & Qt::ShiftModifier)
        tickRange(target, false);
    else if (!(modifiers & Qt::ControlModifier))
        tickOnly(target);
}

bool LargeFilesModel::press(int key, int modifiers)
{
    const Qt::KeyboardModifiers held(modifiers);
    if (files_.isEmpty())
        return false;
    switch (key) {
    case Qt::Key_Up:
        moveTo(currentRow_ - 1, held);
        return true;
    case Qt::Key_Down:
        moveTo(currentRow_ + 1, held);
        return true;
    case Qt::Key_Home:
        moveTo(0, held);
        return true;
    case Qt::Key_End:
        moveTo(static_cast<int>(files_.size()) - 1, held);
        return true;
    case Qt::Key_Space:
        enter();
        toggle(currentRow_);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        enter();
        reveal(currentRow_);
        return true;
    case Qt::Key_A:
        if (!(held & Qt::ControlModifier))
            return false;
        anchor_ = 0;
        tickRange(static_cast<int>(files_.size()) - 1, false);
        return true;
    case Qt::Key_Escape:
        if (appState()->selectedLargeFileIDs().empty())
            return false;
        tick({});
        return true;
    default:
        return false;
    }
}

void LargeFilesModel::enter()
{
    if (currentRow_ < 0 && !files_.isEmpty())
        setCurrentRow(ticked_.value(0, 0));
}

} // namespace brisalon
