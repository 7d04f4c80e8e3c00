#include "data/ClipboardText.h"

#include <cstdint>

namespace navro {
namespace {

struct Decoded {
    char32_t codePoint;
    std::size_t length;
};

// The code point that starts at `at`, or nothing when the bytes there are not well-formed UTF-8
// (overlong forms, surrogates and values past U+10FFFF included). Trimming stops at such bytes
// rather than guessing what they meant.
std::optional<Decoded> decodeAt(std::string_view text, std::size_t at)
{
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80)
        return Decoded{lead, 1};
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
    return Decoded{value, length};
}

bool isTrimmed(char32_t c)
{
    switch (c) {
    case 0x0009:
    case 0x000a:
    case 0x000b:
    case 0x000c:
    case 0x000d:
    case 0x0085:
    case 0x2028:
    case 0x2029:
    // Category Zs.
    case 0x0020:
    case 0x00a0:
    case 0x1680:
    case 0x202f:
    case 0x205f:
    case 0x3000:
        return true;
    default:
        return c >= 0x2000 && c <= 0x200a;
    }
}

bool isAsciiLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isSchemeCharacter(char c)
{
    return isAsciiLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

// The text's URL scheme ("https" of "https://…"), or nothing when it does not begin with one.
std::optional<std::string_view> leadingScheme(std::string_view text)
{
    if (text.empty() || !isAsciiLetter(text.front()))
        return std::nullopt;
    std::size_t end = 1;
    while (end < text.size() && isSchemeCharacter(text[end]))
        ++end;
    if (end == text.size() || text[end] != ':')
        return std::nullopt;
    return text.substr(0, end);
}

} // namespace

std::string trimmedCopiedText(std::string_view utf8)
{
    std::size_t begin = 0;
    while (begin < utf8.size()) {
        const auto decoded = decodeAt(utf8, begin);
        if (!decoded || !isTrimmed(decoded->codePoint))
            break;
        begin += decoded->length;
    }
    std::size_t end = utf8.size();
    while (end > begin) {
        // Back over at most three continuation bytes to where the last character starts.
        std::size_t start = end - 1;
        while (start > begin && end - start < 4 &&
               (static_cast<unsigned char>(utf8[start]) & 0xc0) == 0x80)
            --start;
        const auto decoded = decodeAt(utf8, start);
        if (!decoded || start + decoded->length != end || !isTrimmed(decoded->codePoint))
            break;
        end = start;
    }
    return std::string(utf8.substr(begin, end - begin));
}

std::optional<ClipboardKind> classifyCopiedText(std::string_view utf8)
{
    const std::string trimmed = trimmedCopiedText(utf8);
    if (trimmed.empty())
        return std::nullopt;
    std::string scheme(leadingScheme(trimmed).value_or(""));
    for (char& c : scheme)
        c = lower(c);
    const bool webScheme = scheme.starts_with("http");
    if (webScheme && trimmed.find(' ') == std::string::npos)
        return ClipboardKind::link;
    return ClipboardKind::text;
}

} // namespace navro
