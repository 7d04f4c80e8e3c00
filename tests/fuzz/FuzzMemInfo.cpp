// /proc/meminfo as the system statistics read it: whatever the text, memory in use is never more
// than the total.
#include "system/ProcStats.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto use = navro::parseMemInfo(text);
    if (use && (use->totalKiB == 0 || use->availableKiB > use->totalKiB || use->share() > 1))
        std::abort();
    return 0;
}
