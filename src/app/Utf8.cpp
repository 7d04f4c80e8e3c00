#include "app/Utf8.h"

namespace navro {

std::optional<Utf8Character> decodeUtf8At(std::string_view text, std::size_t at)
{
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80)
        return Utf8Character{lead, 1};
    std::size_t length = 0;
    char32_t value = 0;
    char32_t smallest = 0;
    if ((lead & 0xe0) == 0xc0) {
        length = 2;
        value = lead & 0x1f;
        smallest = 0x80;
    } else if ((lead & 0xf0) == 0xe0) {
        length = 3;
        value = lead & 0x0f;
        smallest = 0x800;
    } else if ((lead & 0xf8) == 0xf0) {
        length = 4;
        value = lead & 0x07;
        smallest = 0x10000;
    } else {
        return std::nullopt;
    }
    if (text.size() - at < length)
        return std::nullopt;
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xc0) != 0x80)
            return std::nullopt;
        value = (value << 6) | (next & 0x3f);
    }
    if (value < smallest || value > 0x10ffff || (value >= 0xd800 && value <= 0xdfff))
        return std::nullopt;
    return Utf8Character{value, length};
}

std::string withValidUtf8(std::string_view text)
{
    std::string valid;
    valid.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (const auto character = decodeUtf8At(text, at)) {
            valid.append(text.substr(at, character->length));
            at += character->length;
        } else {
            valid.append("\xEF\xBF\xBD");
            ++at;
        }
    }
    return valid;
}

} // namespace navro
