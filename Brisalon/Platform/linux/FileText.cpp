#include "Brisalon/Platform/linux/FileText.h"

#include "BrisalonCore/Descriptor.h"

#include <array>
#include <cerrno>
#include <cstddef>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

int writeText(int handle, std::string_view text) noexcept
{
    while (!text.empty()) {
        const ssize_t count = ::write(handle, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

std::optional<std::string> readText(int base, const char* name)
{
    const Descriptor file = Descriptor::open(base, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct stat status;
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    std::string text;
    std::array<char, 65536> buffer;
    while (true) {
        const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
        if (count == 0)
            return text;
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return std::nullopt;
    }
}

} // namespace brisalon
