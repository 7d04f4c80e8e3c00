// usage.json as the usage statistics load it: whatever the bytes, decoding returns a record or a
// reason, and a record that was read is written and read back unchanged.
#include "services/UsageCounts.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const navro::UsageRecordDecoding decoded = navro::decodeUsageRecord(bytes);
    if (!decoded.record) {
        if (decoded.error.empty())
            std::abort();
        return 0;
    }
    const auto again = navro::decodeUsageRecord(navro::encodeUsageRecord(*decoded.record));
    if (!again.record || !(*again.record == *decoded.record))
        std::abort();
    navro::usageReport(decoded.record->days, "0.1.0");
    return 0;
}
