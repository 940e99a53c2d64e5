#include "Brisalon/Platform/linux/Descriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

Descriptor::~Descriptor()
{
    close();
}

Descriptor Descriptor::open(int base, const char* path, int flags, mode_t mode) noexcept
{
    int handle;
    do
        handle = ::openat(base, path, flags | O_CLOEXEC, mode);
    while (handle < 0 && errno == EINTR);
    return Descriptor(handle);
}

Descriptor Descriptor::openFolder(int base, const char* path) noexcept
{
    return open(base, path, O_PATH | O_DIRECTORY | O_NOFOLLOW);
}

Descriptor Descriptor::openOrMakeFolder(int base, const char* path) noexcept
{
    ::mkdirat(base, path, 0700);
    return openFolder(base, path);
}

Descriptor Descriptor::duplicate() const noexcept
{
    return Descriptor(isValid() ? ::fcntl(handle_, F_DUPFD_CLOEXEC, 0) : -1);
}

bool Descriptor::close() noexcept
{
    return !isValid() || ::close(std::exchange(handle_, -1)) == 0;
}

} // namespace brisalon
