#include "Brisalon/Platform/FreedMemory.h"

#include <malloc.h>

namespace brisalon {

void giveBackFreedMemory()
{
    // Threads of a scan come and go, and what they took for the tree lies in arenas of
    // their own, which the C library trims on no other occasion.
    // Under a sanitizer the memory is not the C library's.
#if !defined(__SANITIZE_THREAD__) && !defined(__SANITIZE_ADDRESS__)
    ::malloc_trim(0);
#endif
}

} // namespace brisalon
