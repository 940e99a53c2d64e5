#include "BrisalonCore/Descriptor.h"

#include "base/DescriptorShortage.h"

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
    using detail::DescriptorShortage;
    for (;;) {
        const int number = ::openat(base, path, flags | O_CLOEXEC, mode);
        const int error = errno;
        if (number >= 0)
            return Descriptor(number);
        if (error == EINTR)
            continue;
        if (DescriptorShortage::isReasonOf(error)) {
            if (DescriptorShortage::relieve())
                continue;
            DescriptorShortage::noteRefusal(error);
        }
        errno = error;
        return {};
    }
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
