#include "BrisalonCore/FileURL.h"

#include "BrisalonCore/Paths.h"
#include "model/NameBlock.h"

#include <cstring>
#include <new>
#include <vector>

namespace brisalon {

using detail::NameBlock;
using detail::SharedRef;

namespace detail {

SharedRef<NameBlock> NameBlock::make(FileURL folder, std::string_view bytes)
{
    void* memory = ::operator new(sizeof(NameBlock) + bytes.size());
    std::memcpy(static_cast<char*>(memory) + sizeof(NameBlock), bytes.data(), bytes.size());
    return SharedRef<NameBlock>(new (memory) NameBlock(std::move(folder)));
}

void NameBlock::destroy(const NameBlock* block) noexcept
{
    while (block) {
        const NameBlock* next = block->folder_.names_.detach();
        block->~NameBlock();
        ::operator delete(const_cast<NameBlock*>(block));
        block = next && next->release() ? next : nullptr;
    }
}

} // namespace detail

namespace {

bool isRootPath(std::string_view path) noexcept
{
    return path == "/";
}

} // namespace

FileURL::FileURL(std::string_view path)
{
    path = path.substr(0, path.find('\0'));
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    if (path.empty())
        return;
    std::string bytes(path);
    bytes.push_back('\0');
    names_ = NameBlock::make(FileURL(), bytes);
}

FileURL::FileURL(SharedRef<NameBlock> names, std::uint64_t offset) noexcept
    : names_(std::move(names)), offset_(offset)
{
}

FileURL::FileURL() noexcept = default;
FileURL::FileURL(const FileURL&) noexcept = default;
FileURL::FileURL(FileURL&&) noexcept = default;
FileURL& FileURL::operator=(const FileURL&) noexcept = default;
FileURL& FileURL::operator=(FileURL&&) noexcept = default;
FileURL::~FileURL() = default;

std::string FileURL::path() const
{
    if (!names_)
        return {};
    // Two passes up the chain: the first measures, the second fills from the end.
    std::size_t length = 0;
    for (const FileURL* url = this;; url = &url->names_->folder()) {
        const std::string_view name = url->names_->name(url->offset_);
        length += name.size();
        if (url->names_->folder().isEmpty()) {
            if (url != this && !isRootPath(name))
                ++length;
            break;
        }
        if (url != this)
            ++length;
    }
    std::string result(length, '/');
    for (const FileURL* url = this; !url->isEmpty(); url = &url->names_->folder()) {
        const std::string_view name = url->names_->name(url->offset_);
        if (url != this && !isRootPath(name))
            --length;
        length -= name.size();
        result.replace(length, name.size(), name);
    }
    return result;
}

std::string_view FileURL::lastPathComponent() const noexcept
{
    if (!names_)
        return {};
    const std::string_view name = names_->name(offset_);
    return name.substr(name.rfind('/') + 1);
}

FileURL FileURL::deletingLastPathComponent() const
{
    if (!names_)
        return {};
    if (!names_->folder().isEmpty())
        return names_->folder();
    const std::string_view whole = names_->name(offset_);
    const auto slash = whole.rfind('/');
    if (slash == std::string_view::npos)
        return {};
    return FileURL(whole.substr(0, slash == 0 ? 1 : slash));
}

FileURL FileURL::appendingPathComponent(std::string_view component) const
{
    FileURL result = *this;
    for (const std::string_view piece :
         paths::components(component.substr(0, component.find('\0')))) {
        std::string bytes(piece);
        bytes.push_back('\0');
        result = FileURL(NameBlock::make(std::move(result), bytes), 0);
    }
    return result;
}

FileURL FileURL::standardized() const
{
    if (isEmpty())
        return {};
    const std::string whole = paths::absolute(path());
    std::vector<std::string_view> kept;
    for (const std::string_view piece : paths::components(whole)) {
        if (piece == ".")
            continue;
        if (piece != "..")
            kept.push_back(piece);
        else if (!kept.empty())
            kept.pop_back();
    }
    std::string result;
    for (const std::string_view piece : kept) {
        result += '/';
        result += piece;
    }
    return FileURL(result.empty() ? "/" : result);
}

bool FileURL::pathEquals(std::string_view path) const noexcept
{
    for (const FileURL* url = this; !url->isEmpty();) {
        const std::string_view name = url->names_->name(url->offset_);
        const FileURL& folder = url->names_->folder();
        if (folder.isEmpty())
            return path == name;
        if (!path.ends_with(name))
            return false;
        path.remove_suffix(name.size());
        if (isRootPath(folder.names_->name(folder.offset_)))
            return isRootPath(path);
        if (!path.ends_with('/'))
            return false;
        path.remove_suffix(1);
        url = &folder;
    }
    return path.empty();
}

bool operator==(const FileURL& a, const FileURL& b) noexcept
{
    const FileURL* left = &a;
    const FileURL* right = &b;
    for (;;) {
        if (left->names_.get() == right->names_.get() && left->offset_ == right->offset_)
            return true;
        if (left->isEmpty() || right->isEmpty())
            return false;
        const std::string_view leftName = left->names_->name(left->offset_);
        const std::string_view rightName = right->names_->name(right->offset_);
        if (left->names_->folder().isEmpty())
            return right->pathEquals(leftName);
        if (right->names_->folder().isEmpty())
            return left->pathEquals(rightName);
        if (leftName != rightName)
            return false;
        left = &left->names_->folder();
        right = &right->names_->folder();
    }
}

} // namespace brisalon
