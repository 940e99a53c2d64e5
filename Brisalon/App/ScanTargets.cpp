#include "Brisalon/App/ScanTargets.h"

#include "Brisalon/Platform/HomeFolder.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace brisalon {

FileURL ScanTargets::home()
{
    return homeFolder();
}

ScanTargets::Phase ScanTargets::phase(const FileNodeValue& tree, bool isScanning)
{
    if (isScanning)
        return Phase::Scanning;
    return tree ? Phase::Mapped : Phase::BeforeFirst;
}

FileURL ScanTargets::dropped(const QList<QUrl>& addresses)
{
    if (addresses.size() != 1 || !addresses.first().isLocalFile())
        return {};
    // By its bytes, which need not be text.
    const std::string path =
        QByteArray::fromPercentEncoding(addresses.first().path(QUrl::FullyEncoded).toLatin1())
            .toStdString();
    std::error_code error;
    return std::filesystem::is_directory(path, error) ? FileURL(path) : FileURL();
}

bool ScanTargets::isShown(const FileURL& target, Phase phase, const FileURL& scanRoot)
{
    return phase == Phase::Mapped &&
           scanRoot.resolvingSymbolicLinks() == target.resolvingSymbolicLinks();
}

} // namespace brisalon
