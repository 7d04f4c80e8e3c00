#include "data/ClipboardText.h"

#include "app/Utf8.h"

namespace navro {
namespace {

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
    // Trimming stops at bytes that are not well-formed UTF-8 rather than guess what they meant.
    while (begin < utf8.size()) {
        const auto decoded = decodeUtf8At(utf8, begin);
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
        const auto decoded = decodeUtf8At(utf8, start);
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
