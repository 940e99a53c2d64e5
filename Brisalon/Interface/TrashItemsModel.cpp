#include "Brisalon/Interface/TrashItemsModel.h"

#include <algorithm>
#include <limits>
#include <string>

namespace brisalon {

void TrashItemsModel::follow(AppState& state)
{
    connect(&state, &AppState::confirmTrashChanged, this, &TrashItemsModel::replaceRows);
    replaceRows();
}

int TrashItemsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count_;
}

QVariant TrashItemsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != entry ||
        !appState()->confirmTrash())
        return {};
    const TrashRequest& request = *appState()->confirmTrash();
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
    if (!appState()->confirmTrash())
        return;
    constexpr std::size_t most = std::numeric_limits<int>::max();
    beginResetModel();
    count_ = static_cast<int>(std::min(appState()->confirmTrash()->urls.size(), most));
    endResetModel();
}

} // namespace brisalon
