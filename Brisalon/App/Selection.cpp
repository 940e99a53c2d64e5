#include "Brisalon/App/Selection.h"

#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/ByteFormat.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace brisalon {

Selection::Selection(FileNodeValue node, const QList<LargeFileEntry>& listed,
                     const std::set<std::string>& ticked)
    : node_(std::move(node)), isOfFiles_(!ticked.empty())
{
    if (!isOfFiles_)
        return;
    for (const LargeFileEntry& file : listed) {
        if (ticked.contains(file.id()))
            files_.append(file);
    }
}

std::int64_t Selection::bytes() const
{
    if (!isOfFiles_)
        return node_.allocatedSize();
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    std::int64_t sum = 0;
    for (const LargeFileEntry& file : files_)
        sum += std::min(file.allocatedSize, most - sum);
    return sum;
}

QString Selection::sizeText() const
{
    return displayText(ByteFormat::string(bytes()));
}

QString Selection::title() const
{
    if (isOfFiles_ && !isOneItem())
        return QStringLiteral("%1 large files").arg(files_.size());
    return breakable(displayText(item().name));
}

QString Selection::subtitle() const
{
    if (!isOfFiles_)
        return node_.kindTitle();
    return isOneItem() ? displayText(NodeKind(NodeKind::file).title())
                       : QStringLiteral("Multi-select from Largest tab");
}

LargeFileEntry Selection::item() const
{
    if (!isOneItem())
        return {};
    if (isOfFiles_)
        return files_.first();
    return {node_.url(), node_->name(), node_->allocatedSize(), node_->hogKind(), node_->risk()};
}

QList<SelectionFact> Selection::facts() const
{
    QList<SelectionFact> facts;
    if (isAggregate())
        facts.append({"Contents", QStringLiteral("%1 small files").arg(node_.smallFileCount())});
    return facts;
}

bool Selection::isFolder() const
{
    return !isOfFiles_ && node_ && node_->kind() == NodeKind::directory;
}

std::vector<FileURL> Selection::urls() const
{
    std::vector<FileURL> urls;
    if (isOfFiles_) {
        for (const LargeFileEntry& file : files_)
            urls.push_back(file.url);
    } else if (isAggregate()) {
        const FileURLList sources = node_->aggregateSources();
        urls.assign(sources.begin(), sources.end());
    } else if (node_) {
        urls.push_back(node_->url());
    }
    return urls;
}

std::vector<FileURL> Selection::places() const
{
    if (isAggregate())
        return {node_.url().deletingLastPathComponent()};
    return urls();
}

QString Selection::trashRefusal(std::int64_t protectedCount) const
{
    if (protectedCount > 0)
        return QStringLiteral("Those paths are protected and will not be deleted.");
    if (isAggregate())
        return QStringLiteral("Zoom in to delete individual small files.");
    return QStringLiteral("Select a file or folder first.");
}

} // namespace brisalon
