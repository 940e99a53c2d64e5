#include "Brisalon/Map/LegendKinds.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/Map/NodeColor.h"

#include <algorithm>

namespace brisalon {

std::vector<HogKind> visibleKinds(std::span<const FileNode> nodes)
{
    std::vector<HogKind> kinds;
    for (const FileNode& node : nodes) {
        if (node.hogKind() != HogKind::none &&
            std::ranges::find(kinds, node.hogKind()) == kinds.end())
            kinds.push_back(node.hogKind());
    }
    return kinds;
}

void LegendKinds::setLevel(const FileNodeValue& level)
{
    if (level == level_)
        return;
    level_ = level;
    QVariantList entries;
    if (level_) {
        for (const HogKind kind : visibleKinds(level_->children())) {
            const std::string_view label = title(kind);
            entries.append(QVariant::fromValue(
                LegendEntry{kind, displayText(label), NodeColor::color(kind, label)}));
        }
    }
    emit levelChanged();
    if (entries == entries_)
        return;
    entries_ = entries;
    emit entriesChanged();
}

} // namespace brisalon
