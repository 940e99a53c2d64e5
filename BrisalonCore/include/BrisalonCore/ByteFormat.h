#pragma once

#include <cstdint>
#include <string>

namespace brisalon {

/// Byte counts as the short text used wherever a size is shown.
class ByteFormat {
public:
    ByteFormat() = delete;

    /// Base 1024, "B" to "TB", a decimal point whatever the locale. Whole bytes
    /// below 1024; one decimal place while the value in its unit, before
    /// rounding, is below 10. Negative counts read as 0. Any thread.
    static std::string string(std::int64_t bytes);
};

} // namespace brisalon
