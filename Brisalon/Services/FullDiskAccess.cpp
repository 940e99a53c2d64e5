#include "Brisalon/Services/FullDiskAccess.h"

namespace brisalon {

bool FullDiskAccess::isGranted()
{
    return true;
}

} // namespace brisalon
