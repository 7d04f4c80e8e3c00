// /proc/stat as the system statistics read it: whatever the text, a reading is self-consistent
// and a load between two readings stays within 0…1.
#include "system/ProcStats.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto times = navro::parseProcStat(text);
    if (!times)
        return 0;
    if (times->busy > times->total)
        std::abort();
    const auto load = navro::cpuLoad({0, 0}, *times);
    if (load && (*load < 0 || *load > 1))
        std::abort();
    return 0;
}
