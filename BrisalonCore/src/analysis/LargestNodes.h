#pragma once

#include "BrisalonCore/LargeFileEntry.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace brisalon::detail {

/// The largest of the nodes that are offered, equal ones by the order of the offers.
/// Memory for as many as it keeps, whatever the number offered. The nodes must live
/// until the entries are made.
class LargestNodes {
public:
    explicit LargestNodes(std::size_t limit) noexcept : limit_(limit) {}

    void offer(const FileNode& node)
    {
        const Candidate candidate{node.allocatedSize(), offers_++, &node};
        if (best_.size() == limit_) {
            if (limit_ == 0 || !standsBefore(candidate, best_.front()))
                return;
            std::ranges::pop_heap(best_, standsBefore);
            best_.pop_back();
        }
        best_.push_back(candidate);
        std::ranges::push_heap(best_, standsBefore);
    }

    /// Largest first; afterwards none are kept.
    std::vector<LargeFileEntry> takeEntries()
    {
        std::ranges::sort_heap(best_, standsBefore);
        std::vector<LargeFileEntry> entries;
        entries.reserve(best_.size());
        for (const auto& [size, position, node] : best_)
            entries.push_back({node->url(), node->name(), size, node->hogKind(), node->risk()});
        best_.clear();
        return entries;
    }

private:
    struct Candidate {
        std::int64_t size;
        std::size_t position;
        const FileNode* node;
    };

    static bool standsBefore(const Candidate& a, const Candidate& b) noexcept
    {
        return a.size != b.size ? a.size > b.size : a.position < b.position;
    }

    std::size_t limit_;
    std::size_t offers_ = 0;
    std::vector<Candidate> best_; ///< a heap, the last of them on top
};

} // namespace brisalon::detail
