#include "Brisalon/Platform/PercentEncoding.h"

namespace brisalon {

namespace {

bool isPlain(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') ||
           std::string_view("-_.!~*'()/").find(byte) != std::string_view::npos;
}

} // namespace

std::string percentEncoded(std::string_view path)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(path.size());
    for (const char byte : path) {
        if (isPlain(byte)) {
            result += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            result += '%';
            result += digits[value >> 4U];
            result += digits[value & 15U];
        }
    }
    return result;
}

} // namespace brisalon
