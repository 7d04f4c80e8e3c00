// A machine-id file as the device identifier reads it: whatever the bytes, an id comes only from
// 32 lower-case hexadecimal digits, and the identifier derived from it is a version-4 UUID.
#include "services/DeviceIdentifier.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto id = navro::parseMachineId(bytes);
    if (!id)
        return 0;
    if (size != 32 && size != 33)
        std::abort();
    const std::string text =
        navro::uuidText(navro::applicationSpecificId(*id, navro::navroApplicationId));
    if (text.size() != 36 || text[14] != '4')
        std::abort();
    return 0;
}
