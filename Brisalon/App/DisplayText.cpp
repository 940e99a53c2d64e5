#include "Brisalon/App/DisplayText.h"

namespace brisalon {

QString displayText(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace brisalon
