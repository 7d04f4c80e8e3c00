// What udev tells of a USB device, as the USB section reads it: lines of KEY=VALUE, properties as
// they are and attributes after an "@" ("@product=..."), a line "sysname=..." for the kernel's
// name. Whatever the text, a listed device's name is valid UTF-8 on one line without controls or
// direction marks, and of bounded length.
#include "system/UsbDeviceFacts.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

// Decodes `text` as UTF-8; false at the first invalid sequence or forbidden character.
bool isCleanLine(std::string_view text, std::size_t& characters)
{
    characters = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t length = lead < 0x80             ? 1
                                   : (lead & 0xE0) == 0xC0 ? 2
                                   : (lead & 0xF0) == 0xE0 ? 3
                                   : (lead & 0xF8) == 0xF0 ? 4
                                                           : 0;
        if (length == 0 || at + length > text.size())
            return false;
        char32_t c = length == 1 ? lead : lead & (0x7F >> length);
        for (std::size_t i = 1; i < length; ++i) {
            const auto next = static_cast<unsigned char>(text[at + i]);
            if ((next & 0xC0) != 0x80)
                return false;
            c = (c << 6) | (next & 0x3F);
        }
        if (c < 0x20 || (c >= 0x7F && c <= 0x9F) || (c >= 0x202A && c <= 0x202E) ||
            (c >= 0x2066 && c <= 0x2069) || c == 0x200E || c == 0x200F || c == 0x061C ||
            (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF)
            return false;
        at += length;
        ++characters;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view text(reinterpret_cast<const char*>(data), size);
    navro::UsbDeviceFacts facts;
    facts.path = "/sys/devices/test/1-1";
    facts.sysName = "1-1";
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            continue;
        const std::string_view key = line.substr(0, equals);
        const std::string value(line.substr(equals + 1));
        if (key == "sysname")
            facts.sysName = value;
        else if (key.starts_with("@"))
            facts.attributes[std::string(key.substr(1))] = value;
        else
            facts.properties[std::string(key)] = value;
    }
    const auto device = navro::usbDeviceFrom(facts);
    if (!device)
        return 0;
    std::size_t characters = 0;
    if (device->id != facts.path || !isCleanLine(device->name, characters) || characters > 81 ||
        device->name.starts_with(' ') || device->name.ends_with(' '))
        std::abort();
    if (!device->ids.empty() && device->ids.size() != 9)
        std::abort();
    if (const auto ids = navro::usbIdsOf(facts);
        ids && navro::hardwareDatabaseKey(*ids).size() != 14)
        std::abort();
    return 0;
}
