#include "BrisalonCore/ByteFormat.h"

#include <gtest/gtest.h>

#include <limits>

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

} // namespace
