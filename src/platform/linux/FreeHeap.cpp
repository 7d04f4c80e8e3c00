#include "app/FreeHeap.h"

#include <malloc.h>

namespace navro {

void returnLargeBlocksWhenFreed()
{
    // Setting the threshold fixes it at glibc's starting value: left alone, it rises to the size of
    // each mapped block freed (a 1920x1080 picture is 8 MiB), and the thread heaps that then serve
    // such blocks keep their pages.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
}

void returnFreeHeapToSystem()
{
    // glibc trims only the top of the main heap by itself; this returns free pages anywhere.
    malloc_trim(0);
}

} // namespace navro
