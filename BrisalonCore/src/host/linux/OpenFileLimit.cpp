#include "BrisalonCore/OpenFileLimit.h"

#include <sys/resource.h>

namespace brisalon {

namespace {

/// What every system allows, POSIX says.
constexpr rlim_t leastLimit = 20;

} // namespace

std::size_t openFileLimit() noexcept
{
    struct rlimit limit;
    return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : leastLimit;
}

void raiseOpenFileLimit() noexcept
{
    struct rlimit limit;
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    (void)::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace brisalon
