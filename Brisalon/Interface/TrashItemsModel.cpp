#include "Brisalon/Interface/TrashItemsModel.h"

#include <algorithm>
#include <limits>
#include <string>

namespace brisalon {

void TrashItemsModel::setAppState(AppState* state)
{
    if (state == state_)
        return;
    state_ = state;
    connect(state_, &AppState::confirmTrashChanged, this, &TrashItemsModel::replaceRows);
    replaceRows();
    emit appStateChanged();
}

int TrashItemsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count_;
}

QVariant TrashItemsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != entry ||
        !state_->confirmTrash())
        return {};
    const TrashRequest& request = *state_->confirmTrash();
    const auto row = static_cast<std::size_t>(index.row());
    const FileURL& url = request.urls[row];
    return QVariant::fromValue(LargeFileEntry{.url = url,
                                              .name = std::string(url.lastPathComponent()),
                                              .allocatedSize = request.bytesOf(row)});
}

QHash<int, QByteArray> TrashItemsModel::roleNames() const
{
    return {{entry, "entry"}};
}

void TrashItemsModel::replaceRows()
{
    if (!state_->confirmTrash())
        return;
    constexpr std::size_t most = std::numeric_limits<int>::max();
    beginResetModel();
    count_ = static_cast<int>(std::min(state_->confirmTrash()->urls.size(), most));
    endResetModel();
}

} // namespace brisalon
