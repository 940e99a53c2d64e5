#include "Brisalon/App/DisplayText.h"

namespace brisalon {

QString displayText(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QString displayPath(std::string_view path)
{
    // Any path that the system takes in one piece is shown whole.
    constexpr std::size_t longest = 4096;
    constexpr std::size_t end = longest / 2;
    if (path.size() <= longest)
        return displayText(path);
    return displayText(path.substr(0, end)) + QChar(0x2026) +
           displayText(path.substr(path.size() - end));
}

} // namespace brisalon
