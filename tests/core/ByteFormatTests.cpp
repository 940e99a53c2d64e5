#include "BrisalonCore/ByteFormat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

using namespace brisalon;

namespace {

TEST(ByteFormat, Samples)
{
    const std::pair<std::int64_t, const char*> samples[] = {
        {0, "0 B"},
        {1, "1 B"},
        {1023, "1023 B"},
        {1024, "1.0 KB"},
        {1536, "1.5 KB"},
        {10188, "9.9 KB"},
        {10239, "10.0 KB"},
        {10240, "10 KB"},
        {262144, "256 KB"},
        {1048575, "1024 KB"},
        {1048576, "1.0 MB"},
        {1073741824, "1.0 GB"},
        {1099511627776, "1.0 TB"},
        {1125899906842624, "1024 TB"},
        {std::numeric_limits<std::int64_t>::max(), "8388608 TB"},
        {-5, "0 B"},
        {std::numeric_limits<std::int64_t>::min(), "0 B"},
        // Halves go to the even neighbour, as printf has it.
        {10752, "10 KB"},
        {11776, "12 KB"},
    };
    for (const auto& [bytes, text] : samples)
        EXPECT_EQ(ByteFormat::string(bytes), text) << bytes;
}

TEST(ByteFormat, RoundsAsPrintfAtEveryScale)
{
    std::mt19937_64 random(1);
    const char* const units[] = {"KB", "MB", "GB", "TB"};
    for (int i = 0; i < 20000; ++i) {
        const auto bytes = static_cast<std::int64_t>((random() >> 1) >> (random() % 53));
        if (bytes < 1024)
            continue;
        int unit = 1;
        while (unit < 4 && bytes >> (10 * (unit + 1)) != 0)
            ++unit;
        const double value = std::ldexp(static_cast<double>(bytes), -10 * unit);
        char expected[64];
        if (value >= 10)
            std::snprintf(expected, sizeof expected, "%.0f %s", value, units[unit - 1]);
        else
            std::snprintf(expected, sizeof expected, "%.1f %s", value, units[unit - 1]);
        ASSERT_EQ(ByteFormat::string(bytes), expected) << bytes;
    }
}

} // namespace
