#pragma once

#include "BrisalonCore/FileNode.h"
#include "model/NameBlock.h"

#include <string>
#include <vector>

namespace bench {

/// Files of one folder with these sizes, which share a block of names as those
/// that a scan finds.
inline std::vector<brisalon::FileNode> siblingNodes(const std::vector<std::int64_t>& sizes)
{
    using namespace brisalon;
    using detail::NameBlock;
    std::string bytes;
    std::vector<std::uint64_t> offsets;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        offsets.push_back(bytes.size());
        bytes.append("file").append(std::to_string(i)).push_back('\0');
    }
    const auto names = NameBlock::make(FileURL("/folder"), bytes);
    std::vector<FileNode> nodes;
    nodes.reserve(sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i)
        nodes.emplace_back(NameBlock::url(names, offsets[i]), names->name(offsets[i]), sizes[i],
                           NodeKind::file, HogKind::none, Risk::unknown, std::vector<FileNode>(),
                           FileURLList());
    return nodes;
}

} // namespace bench
