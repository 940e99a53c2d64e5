#include "Brisalon/Platform/FreedMemory.h"

#include <malloc.h>

namespace brisalon {

void giveBackFreedMemory()
{
    // Threads of a scan come and go, and what they took for the tree lies in arenas of
    // their own, which the C library trims on no other occasion.
    ::malloc_trim(0);
}

} // namespace brisalon
