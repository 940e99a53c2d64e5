#include "host/ThreadUsage.h"

#include <sys/resource.h>

namespace brisalon::host {

ThreadUsage ThreadUsage::current() noexcept
{
    struct rusage usage{};
    (void)::getrusage(RUSAGE_THREAD, &usage);
    const auto duration = [](const timeval& time) {
        return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
    };
    return {duration(usage.ru_utime) + duration(usage.ru_stime), usage.ru_nvcsw};
}

} // namespace brisalon::host
