#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <sys/resource.h>

namespace bench {

/// The wall time since its making.
class Stopwatch {
public:
    double milliseconds() const
    {
        return std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
    }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point start_ = Clock::now();
};

/// The most memory that this process has held at once so far.
inline std::int64_t peakResidentKilobytes()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

/// What one walk prints, in one line.
struct Report {
    std::int64_t items = 0;
    std::int64_t bytes = 0;
    std::optional<std::int64_t> nodes = std::nullopt;
    double milliseconds = 0;
    std::int64_t peakKilobytes = peakResidentKilobytes();

    void print() const
    {
        std::printf("items=%jd bytes=%jd ", std::intmax_t{items}, std::intmax_t{bytes});
        if (nodes)
            std::printf("nodes=%jd ", std::intmax_t{*nodes});
        std::printf("ms=%.1f peak_rss_kb=%jd\n", milliseconds, std::intmax_t{peakKilobytes});
    }
};

} // namespace bench
