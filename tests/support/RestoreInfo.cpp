#include "support/RestoreInfo.h"

namespace brisalon::tests {

namespace {

int hexDigit(char digit)
{
    return static_cast<int>(std::string("0123456789ABCDEF").find(digit));
}

/// Nothing for what is not plain characters and escapes.
std::optional<std::string> decoded(const std::string& text)
{
    const std::string plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                              "-_.!~*'()/";
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (plain.find(text[i]) != std::string::npos) {
            result += text[i];
            continue;
        }
        if (text[i] != '%' || i + 2 >= text.size() || hexDigit(text[i + 1]) < 0 ||
            hexDigit(text[i + 2]) < 0)
            return std::nullopt;
        result += static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
        i += 2;
    }
    return result;
}

} // namespace

std::optional<RestoreInfo> RestoreInfo::parse(const std::string& text)
{
    const std::string head = "[Trash Info]\nPath=";
    const std::string middle = "\nDeletionDate=";
    const auto pathEnd = text.find(middle);
    if (!text.starts_with(head) || pathEnd == std::string::npos || !text.ends_with('\n'))
        return std::nullopt;
    const auto path = decoded(text.substr(head.size(), pathEnd - head.size()));
    const std::string rest = text.substr(pathEnd + middle.size());
    if (!path || rest.find('\n') != rest.size() - 1)
        return std::nullopt;
    return RestoreInfo{*path, rest.substr(0, rest.size() - 1)};
}

} // namespace brisalon::tests
