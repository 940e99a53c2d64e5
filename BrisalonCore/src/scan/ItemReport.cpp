#include "scan/ItemReport.h"

#include "model/NameBlock.h"

namespace brisalon::detail {

namespace {

const FileURL& folderOf(const FileURL& url) noexcept
{
    return NameBlock::blockOf(url)->folder();
}

std::string_view nameOf(const FileURL& url) noexcept
{
    return NameBlock::blockOf(url)->name(NameBlock::offsetOf(url));
}

bool isSame(const FileURL& a, const FileURL& b) noexcept
{
    return NameBlock::blockOf(a) == NameBlock::blockOf(b) &&
           NameBlock::offsetOf(a) == NameBlock::offsetOf(b);
}

} // namespace

const ScanProgress& ItemReport::of(const FileURL& folder, std::size_t depth, std::string_view name,
                                   std::int64_t visitedCount, std::int64_t bytesFound)
{
    enter(folder, depth);
    std::string& path = report_.currentPath;
    path.resize(folderLength_);
    path += '/';
    path += name;
    report_.visitedCount = visitedCount;
    report_.bytesFound = bytesFound;
    return report_;
}

void ItemReport::enter(const FileURL& folder, std::size_t depth)
{
    std::string& path = report_.currentPath;
    if (folder_.isEmpty()) {
        path = folder.path();
        folderLength_ = path == "/" ? 0 : path.size();
    } else {
        // Up from both to the folder that they share: at last, the walk's root.
        std::size_t shared = folderLength_;
        std::size_t added = 0;
        const FileURL* last = &folder_;
        const FileURL* next = &folder;
        for (std::size_t lastDepth = depth_, nextDepth = depth; !isSame(*last, *next);) {
            const bool isLastDeeper = lastDepth >= nextDepth;
            if (nextDepth >= lastDepth) {
                added += nameOf(*next).size() + 1;
                next = &folderOf(*next);
                --nextDepth;
            }
            if (isLastDeeper) {
                shared -= nameOf(*last).size() + 1;
                last = &folderOf(*last);
                --lastDepth;
            }
        }
        folderLength_ = shared + added;
        path.resize(folderLength_);
        std::size_t end = folderLength_;
        for (const FileURL* url = &folder; end > shared; url = &folderOf(*url)) {
            const std::string_view name = nameOf(*url);
            end -= name.size();
            name.copy(&path[end], name.size());
            path[--end] = '/';
        }
    }
    folder_ = folder;
    depth_ = depth;
}

} // namespace brisalon::detail
