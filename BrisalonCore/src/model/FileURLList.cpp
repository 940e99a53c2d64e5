#include "BrisalonCore/FileURLList.h"

#include "model/NameBlock.h"

#include <algorithm>
#include <cstring>

namespace brisalon {

using detail::NameBlock;

namespace {

std::uint64_t offsetBehindName(const NameBlock& names, std::uint64_t offset) noexcept
{
    return offset + std::strlen(names.name(offset)) + 1;
}

} // namespace

FileURLList::FileURLList(std::initializer_list<FileURL> urls)
    : FileURLList(std::vector<FileURL>(urls))
{
}

FileURLList::FileURLList(std::vector<FileURL> urls)
{
    if (!urls.empty())
        urls_ = std::make_shared<const std::vector<FileURL>>(std::move(urls));
}

FileURLList::FileURLList(FileURL aggregate, std::size_t count) noexcept
    : aggregate_(std::move(aggregate)), packedCount_(count)
{
}

std::size_t FileURLList::size() const noexcept
{
    return urls_ ? urls_->size() : packedCount_;
}

FileURLList::Iterator FileURLList::begin() const
{
    return {this, 0};
}

FileURLList::Iterator FileURLList::end() const
{
    return {this, size()};
}

bool operator==(const FileURLList& a, const FileURLList& b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
}

bool FileURLList::samePackedNames(const FileURLList& a, const FileURLList& b) noexcept
{
    if (a.packedCount_ != b.packedCount_)
        return false;
    const NameBlock& aNames = *NameBlock::refOf(a.aggregate_);
    const NameBlock& bNames = *NameBlock::refOf(b.aggregate_);
    std::uint64_t aOffset = offsetBehindName(aNames, NameBlock::offsetOf(a.aggregate_));
    std::uint64_t bOffset = offsetBehindName(bNames, NameBlock::offsetOf(b.aggregate_));
    for (std::size_t i = 0; i < a.packedCount_; ++i) {
        if (std::strcmp(aNames.name(aOffset), bNames.name(bOffset)) != 0)
            return false;
        aOffset = offsetBehindName(aNames, aOffset);
        bOffset = offsetBehindName(bNames, bOffset);
    }
    return true;
}

FileURLList::Iterator::Iterator(const FileURLList* list, std::size_t index)
    : list_(list), index_(index), offset_(0)
{
    if (index == 0 && list->packedCount_ > 0)
        offset_ = offsetBehindName(*NameBlock::refOf(list->aggregate_),
                                   NameBlock::offsetOf(list->aggregate_));
}

FileURL FileURLList::Iterator::operator*() const
{
    if (list_->urls_)
        return (*list_->urls_)[index_];
    return NameBlock::url(NameBlock::refOf(list_->aggregate_), offset_);
}

FileURLList::Iterator& FileURLList::Iterator::operator++()
{
    if (!list_->urls_)
        offset_ = offsetBehindName(*NameBlock::refOf(list_->aggregate_), offset_);
    ++index_;
    return *this;
}

FileURLList::Iterator FileURLList::Iterator::operator++(int)
{
    Iterator before = *this;
    ++*this;
    return before;
}

} // namespace brisalon
