#include "Brisalon/Platform/PercentEncoding.h"

#include <QByteArray>

namespace brisalon {

std::string percentEncoded(std::string_view path)
{
    return QByteArray(path.data(), static_cast<qsizetype>(path.size()))
        .toPercentEncoding("!*'()/")
        .toStdString();
}

} // namespace brisalon
