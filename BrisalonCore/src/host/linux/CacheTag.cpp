#include "host/CacheTag.h"

#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon::host {

bool isCacheTagged(const Descriptor& folder) noexcept
{
    constexpr std::string_view signature = "Signature: 8a477f597d28d172789f06886806bc55";
    static_assert(signature.size() == 43);

    // What is no regular file might do something when it is opened.
    struct stat status;
    if (::fstatat(folder.get(), cacheTagName, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) !=
            0 ||
        !S_ISREG(status.st_mode))
        return false;
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK;
    Descriptor tag = Descriptor::open(folder.get(), cacheTagName, flags | O_NOATIME);
    if (!tag.isValid() && errno == EPERM)
        tag = Descriptor::open(folder.get(), cacheTagName, flags);
    char start[signature.size()];
    ssize_t count;
    do
        count = ::pread(tag.get(), start, sizeof start, 0);
    while (count < 0 && errno == EINTR);
    return count > 0 && std::string_view(start, static_cast<std::size_t>(count)) == signature;
}

bool isBelowCacheTag(const Descriptor& folder, std::size_t depth)
{
    const auto above = [](const Descriptor& below) {
        return Descriptor::open(below.get(), "..", O_PATH | O_DIRECTORY);
    };
    for (Descriptor next = above(folder); depth > 0 && next.isValid(); --depth) {
        if (isCacheTagged(next))
            return true;
        next = above(next);
    }
    return false;
}

} // namespace brisalon::host
