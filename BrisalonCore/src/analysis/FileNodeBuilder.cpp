#include "BrisalonCore/FileNodeBuilder.h"

#include "BrisalonCore/HogClassifier.h"
#include "model/NodeContent.h"

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
    return detail::usualName(url, kind);
}

} // namespace brisalon
