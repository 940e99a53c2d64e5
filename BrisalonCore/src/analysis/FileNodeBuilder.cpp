#include "BrisalonCore/FileNodeBuilder.h"

#include "BrisalonCore/HogClassifier.h"

namespace brisalon {

FileNode FileNodeBuilder::make(FileURL url, std::int64_t allocatedSize, NodeKind kind,
                               std::vector<FileNode> children, FileURLList aggregateSources)
{
    const HogKind hogKind = HogClassifier::classify(url);
    std::string name = displayName(url, kind);
    return {
        std::move(url), std::move(name),         allocatedSize,       kind,
        hogKind,        brisalon::risk(hogKind), std::move(children), std::move(aggregateSources)};
}

std::string FileNodeBuilder::displayName(const FileURL& url, NodeKind kind)
{
    if (kind.isAggregate())
        return std::to_string(kind.count()) + " small files";
    const std::string_view last = url.lastPathComponent();
    return last.empty() ? url.path() : std::string(last);
}

} // namespace brisalon
