// The update feed as the update check reads it from the network: whatever the bytes, there is an
// offer or a reason, and an offer's link is http(s) and its version reads back as itself.
#include "services/UpdateFeed.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const navro::UpdateFeedReading reading = navro::parseUpdateFeed(bytes);
    if (!reading.offer) {
        if (reading.error.empty())
            std::abort();
        return 0;
    }
    const auto& offer = *reading.offer;
    if (!offer.link.starts_with("https://") && !offer.link.starts_with("http://"))
        std::abort();
    const auto again = navro::VersionNumber::parse(offer.version.text());
    if (!again || !(*again == offer.version))
        std::abort();
    return 0;
}
