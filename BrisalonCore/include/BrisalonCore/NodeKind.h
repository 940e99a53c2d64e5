#pragma once

#include <cstdint>
#include <string_view>

namespace brisalon {

/// What a node of a scan result is.
///
/// A package is a folder that the system presents as one item (an application
/// bundle, a photo library): it is measured whole and is a leaf of the tree.
/// A small-files aggregate stands for all the files of one folder that are
/// smaller than the scanner's threshold.
class NodeKind {
public:
    enum class Case : std::uint8_t { smallFilesAggregate, file, directory, package };

    static constexpr NodeKind smallFilesAggregate(std::int64_t count) noexcept
    {
        return NodeKind(Case::smallFilesAggregate, count);
    }
    static const NodeKind file;
    static const NodeKind directory;
    static const NodeKind package;

    constexpr Case which() const noexcept { return case_; }
    constexpr bool isAggregate() const noexcept { return case_ == Case::smallFilesAggregate; }

    /// How many files an aggregate stands for; 0 for the other cases.
    constexpr std::int64_t count() const noexcept { return count_; }

    /// "Small files", "File", "Folder" or "Package".
    std::string_view title() const noexcept;

    /// True for a folder alone: only folders have children.
    constexpr bool isContainer() const noexcept { return case_ == Case::directory; }

    /// Equal when the cases are and, for aggregates, the counts too.
    friend constexpr bool operator==(const NodeKind&, const NodeKind&) noexcept = default;

private:
    friend class FileNode;
    constexpr NodeKind(Case which, std::int64_t count) noexcept : count_(count), case_(which) {}

    std::int64_t count_;
    Case case_;
};

inline constexpr NodeKind NodeKind::file{Case::file, 0};
inline constexpr NodeKind NodeKind::directory{Case::directory, 0};
inline constexpr NodeKind NodeKind::package{Case::package, 0};

} // namespace brisalon
