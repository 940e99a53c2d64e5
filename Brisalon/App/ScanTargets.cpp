#include "Brisalon/App/ScanTargets.h"

#include "Brisalon/Platform/HomeFolder.h"

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

bool ScanTargets::isShown(const FileURL& target, Phase phase, const FileURL& scanRoot)
{
    return phase == Phase::Mapped &&
           scanRoot.resolvingSymbolicLinks() == target.resolvingSymbolicLinks();
}

} // namespace brisalon
