#pragma once

#include "BrisalonCore/FileURL.h"

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <vector>

namespace brisalon {

/// An immutable sequence of URLs: the files that a small-files block stands for.
///
/// A scan keeps these as names packed behind the block's own name, and a list
/// makes URLs of them while one iterates; a list built from URLs holds them.
/// Copies are cheap, and safe to read from any thread.
class FileURLList {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = FileURL;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = FileURL;

        FileURL operator*() const;
        Iterator& operator++();
        Iterator operator++(int);
        /// Iterators compare equal when they stand at the same position.
        friend bool operator==(const Iterator& a, const Iterator& b) noexcept
        {
            return a.index_ == b.index_;
        }

    private:
        friend class FileURLList;
        Iterator(const FileURLList* list, std::size_t index);

        const FileURLList* list_;
        std::size_t index_;
        std::uint64_t offset_;
    };

    FileURLList() noexcept = default;
    FileURLList(std::initializer_list<FileURL> urls);
    explicit FileURLList(std::vector<FileURL> urls);

    std::size_t size() const noexcept;
    bool empty() const noexcept { return size() == 0; }

    /// Valid while this list lives.
    Iterator begin() const;
    Iterator end() const;

    /// Element-wise equality, in order.
    friend bool operator==(const FileURLList& a, const FileURLList& b);

private:
    friend class FileNode;
    /// The `count` names that follow `aggregate`'s own in its block.
    FileURLList(FileURL aggregate, std::size_t count) noexcept;

    /// Equality of two lists of that packed kind whose aggregates have equal
    /// URLs: that of the names, which makes comparing deep trees linear.
    static bool samePackedNames(const FileURLList& a, const FileURLList& b) noexcept;

    std::shared_ptr<const std::vector<FileURL>> urls_;
    FileURL aggregate_;
    std::size_t packedCount_ = 0;
};

} // namespace brisalon
