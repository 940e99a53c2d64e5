#include "BrisalonCore/Descriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace brisalon {

Descriptor::~Descriptor()
{
    close();
}

Descriptor Descriptor::open(int base, const char* path, int flags, mode_t mode) noexcept
{
    int number;
    do
        number = ::openat(base, path, flags | O_CLOEXEC, mode);
    while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

Descriptor Descriptor::duplicate(int least) const noexcept
{
    return Descriptor(isValid() ? ::fcntl(number_, F_DUPFD_CLOEXEC, least) : -1);
}

bool Descriptor::close() noexcept
{
    return !isValid() || ::close(std::exchange(number_, -1)) == 0;
}

} // namespace brisalon
