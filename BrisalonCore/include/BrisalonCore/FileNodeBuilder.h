#pragma once

#include "BrisalonCore/FileNode.h"

namespace brisalon {

/// Makes consistent nodes outside a scan. Stateless; any thread.
class FileNodeBuilder {
public:
    FileNodeBuilder() = delete;

    /// A node whose hog kind is the classifier's for the URL (aggregates
    /// included), whose risk is that kind's and whose name is displayName; the
    /// arguments themselves are stored unchanged.
    static FileNode make(FileURL url, std::int64_t allocatedSize, NodeKind kind,
                         std::vector<FileNode> children = {}, FileURLList aggregateSources = {});

    /// "37 small files" for an aggregate (no singular form); otherwise the URL's
    /// last path component or, if that is empty, its whole path.
    static std::string displayName(const FileURL& url, NodeKind kind);
};

} // namespace brisalon
