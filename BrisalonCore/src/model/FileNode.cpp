#include "BrisalonCore/FileNode.h"

#include "model/NameBlock.h"
#include "model/NodeContent.h"

#include <new>

namespace brisalon {

using detail::ChildBlock;
using detail::CustomContent;
using detail::NameBlock;
using detail::NodeContent;

namespace detail {

std::string usualName(const FileURL& url, NodeKind kind)
{
    if (kind.isAggregate())
        return std::to_string(kind.count()) + " small files";
    const std::string_view last = url.lastPathComponent();
    return last.empty() ? url.path() : std::string(last);
}

static_assert(sizeof(ChildBlock) % alignof(FileNode) == 0, "the nodes follow directly");

ChildBlock* ChildBlock::make(std::size_t capacity)
{
    return new (::operator new(sizeof(ChildBlock) + capacity * sizeof(FileNode))) ChildBlock();
}

std::span<FileNode> NodeContent::mutableChildren() const noexcept
{
    if (isCustom_)
        return static_cast<const CustomContent*>(this)->nodes;
    return static_cast<const ChildBlock*>(this)->nodes();
}

std::span<const FileNode> NodeContent::children() const noexcept
{
    return mutableChildren();
}

void NodeContent::destroy(const NodeContent* content) noexcept
{
    while (content) {
        const NodeContent* dying = content;
        content = content->nextDying_;
        for (FileNode& node : dying->mutableChildren()) {
            const NodeContent* below = std::exchange(node.content_, nullptr);
            if (below && below->release()) {
                below->nextDying_ = content;
                content = below;
            }
        }
        if (dying->isCustom_) {
            delete static_cast<const CustomContent*>(dying);
        } else {
            const auto* block = static_cast<const ChildBlock*>(dying);
            for (FileNode& node : block->nodes())
                node.~FileNode();
            ::operator delete(const_cast<ChildBlock*>(block));
        }
    }
}

} // namespace detail

FileNode::FileNode(FileURL url, std::string name, std::int64_t allocatedSize, NodeKind kind,
                   HogKind hogKind, Risk risk, std::vector<FileNode> children,
                   FileURLList aggregateSources)
    : url_(std::move(url)),
      allocatedSize_(allocatedSize),
      count_(kind.count()),
      content_(
          new CustomContent(std::move(name), std::move(children), std::move(aggregateSources))),
      case_(kind.which()),
      hogKind_(hogKind),
      risk_(risk),
      shape_(Shape::custom)
{
    content_->retain();
}

FileNode::FileNode(FileURL url, std::int64_t allocatedSize, NodeKind kind, HogKind hogKind,
                   Shape shape) noexcept
    : url_(std::move(url)),
      allocatedSize_(allocatedSize),
      count_(kind.count()),
      case_(kind.which()),
      hogKind_(hogKind),
      risk_(brisalon::risk(hogKind)),
      shape_(shape)
{
}

FileNode::FileNode(const FileNode& other) noexcept
    : url_(other.url_),
      allocatedSize_(other.allocatedSize_),
      count_(other.count_),
      content_(other.content_),
      case_(other.case_),
      hogKind_(other.hogKind_),
      risk_(other.risk_),
      shape_(other.shape_)
{
    if (content_)
        content_->retain();
}

FileNode::FileNode(FileNode&& other) noexcept
    : url_(std::move(other.url_)),
      allocatedSize_(other.allocatedSize_),
      count_(other.count_),
      content_(std::exchange(other.content_, nullptr)),
      case_(other.case_),
      hogKind_(other.hogKind_),
      risk_(other.risk_),
      shape_(std::exchange(other.shape_, Shape::plain))
{
}

FileNode& FileNode::operator=(const FileNode& other) noexcept
{
    return *this = FileNode(other);
}

FileNode& FileNode::operator=(FileNode&& other) noexcept
{
    std::swap(url_, other.url_);
    std::swap(content_, other.content_);
    std::swap(shape_, other.shape_);
    allocatedSize_ = other.allocatedSize_;
    count_ = other.count_;
    case_ = other.case_;
    hogKind_ = other.hogKind_;
    risk_ = other.risk_;
    return *this;
}

FileNode::~FileNode()
{
    if (content_ && content_->release())
        NodeContent::destroy(content_);
}

std::string FileNode::name() const
{
    if (shape_ == Shape::custom)
        return static_cast<const CustomContent*>(content_)->name;
    return detail::usualName(url_, kind());
}

std::span<const FileNode> FileNode::children() const noexcept
{
    return content_ ? content_->children() : std::span<const FileNode>();
}

FileURLList FileNode::aggregateSources() const
{
    if (shape_ == Shape::packedSources)
        return {url_, static_cast<std::size_t>(count_)};
    if (shape_ == Shape::custom)
        return static_cast<const CustomContent*>(content_)->sources;
    return {};
}

bool FileNode::canZoom() const noexcept
{
    return case_ == NodeKind::Case::directory && !children().empty();
}

const FileNode* FileNode::child(std::string_view id) const noexcept
{
    for (const FileNode& node : children())
        if (node.url_.pathEquals(id))
            return &node;
    return nullptr;
}

const FileNode* FileNode::node(std::span<const std::string> ids) const noexcept
{
    const FileNode* found = this;
    for (const std::string& id : ids) {
        found = found->child(id);
        if (!found)
            return nullptr;
    }
    return found;
}

namespace {

/// Two lists of children still to be compared, with the URLs of their parents,
/// which are known to be equal.
struct EqualParents {
    const FileNode* left;
    const FileNode* right;
};

/// Equality of two URLs below equal parents: for the children of a scanned
/// folder a comparison of names suffices, which keeps the comparison of deep
/// trees linear.
bool equalBelow(const EqualParents& parents, const FileURL& left, const FileURL& right) noexcept
{
    if (NameBlock::liesIn(left, parents.left->url()) &&
        NameBlock::liesIn(right, parents.right->url()))
        return left.lastPathComponent() == right.lastPathComponent();
    return left == right;
}

} // namespace

bool FileNode::hasSameValues(const FileNode& other) const noexcept
{
    return allocatedSize_ == other.allocatedSize_ && count_ == other.count_ &&
           case_ == other.case_ && hogKind_ == other.hogKind_ && risk_ == other.risk_;
}

bool FileNode::hasSameNameAndSources(const FileNode& other) const
{
    if (shape_ == Shape::custom || other.shape_ == Shape::custom)
        return name() == other.name() && aggregateSources() == other.aggregateSources();
    if (shape_ == Shape::packedSources)
        return other.shape_ == shape_ &&
               FileURLList::samePackedNames(aggregateSources(), other.aggregateSources());
    return other.shape_ != Shape::packedSources;
}

bool operator==(const FileNode& a, const FileNode& b)
{
    if (a.url_ != b.url_ || !a.hasSameValues(b) || !a.hasSameNameAndSources(b))
        return false;
    std::vector<EqualParents> pending{{&a, &b}};
    while (!pending.empty()) {
        const EqualParents parents = pending.back();
        pending.pop_back();
        if (parents.left->content_ == parents.right->content_)
            continue;
        const auto left = parents.left->children();
        const auto right = parents.right->children();
        if (left.size() != right.size())
            return false;
        for (std::size_t i = 0; i < left.size(); ++i) {
            if (!left[i].hasSameValues(right[i]) ||
                !equalBelow(parents, left[i].url_, right[i].url_) ||
                !left[i].hasSameNameAndSources(right[i]))
                return false;
            if (!left[i].children().empty() || !right[i].children().empty())
                pending.push_back({&left[i], &right[i]});
        }
    }
    return true;
}

} // namespace brisalon
