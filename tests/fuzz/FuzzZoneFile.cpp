// The compiled time-zone files read from $TZDIR or /usr/share/zoneinfo, and the zone rules that
// the TZ variable and those files' footers hold.
#include "prayer/SystemZone.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (auto zone = navro::timeZoneFromTzif("Fuzz/Zone", bytes)) {
        // A zone that was accepted must answer for any instant without failing.
        UErrorCode status = U_ZERO_ERROR;
        int32_t raw = 0;
        int32_t dst = 0;
        for (UDate at : {-1e13, 0.0, 1.7e12, 4e12})
            zone->getOffset(at, false, raw, dst, status);
    }
    navro::isPosixZoneRule(bytes);
    return 0;
}
