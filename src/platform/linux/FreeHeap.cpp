#include "app/FreeHeap.h"

#include <malloc.h>

namespace navro {

void returnFreeHeapToSystem()
{
    // glibc trims only the top of the main heap by itself; this returns free pages anywhere.
    malloc_trim(0);
}

} // namespace navro
