#include "app/IniDocument.h"

#include "app/Log.h"

#include <optional>

namespace navro {
namespace {

constexpr std::string_view generalSection = "General";

// A carriage return too: a line may end in several (a file passed between systems), and a list
// kept as written must not carry them, or writing it back would add a line end of its own.
bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isValidUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = 1;
        char32_t code = lead;
        if (lead >= 0x80) {
            if (lead >= 0xc2 && lead <= 0xdf)
                length = 2, code = lead & 0x1f;
            else if (lead >= 0xe0 && lead <= 0xef)
                length = 3, code = lead & 0x0f;
            else if (lead >= 0xf0 && lead <= 0xf4)
                length = 4, code = lead & 0x07;
            else
                return false;
            if (i + length > text.size())
                return false;
            for (std::size_t k = 1; k < length; ++k) {
                const auto next = static_cast<unsigned char>(text[i + k]);
                if ((next & 0xc0) != 0x80)
                    return false;
                code = code << 6 | (next & 0x3f);
            }
            // Overlong forms, surrogates and code points past Unicode.
            const char32_t least = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
            if (code < least || (code >= 0xd800 && code <= 0xdfff) || code > 0x10ffff)
                return false;
        } else if (lead == 0) {
            return false;
        }
        i += length;
    }
    return true;
}

bool appendUtf8(std::string& out, char32_t code)
{
    if (code > 0x10ffff || (code >= 0xd800 && code <= 0xdfff))
        return false;
    if (code < 0x80) {
        out += char(code);
    } else if (code < 0x800) {
        out += char(0xc0 | code >> 6);
        out += char(0x80 | (code & 0x3f));
    } else if (code < 0x10000) {
        out += char(0xe0 | code >> 12);
        out += char(0x80 | (code >> 6 & 0x3f));
        out += char(0x80 | (code & 0x3f));
    } else {
        out += char(0xf0 | code >> 18);
        out += char(0x80 | (code >> 12 & 0x3f));
        out += char(0x80 | (code >> 6 & 0x3f));
        out += char(0x80 | (code & 0x3f));
    }
    return true;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The value after "=": quotes group, backslash escapes (QSettings' set: the C escapes, \xH... in
// hexadecimal and \0oo in octal), an unquoted comma separates list items and an unquoted semicolon
// starts a comment. None when malformed.
std::optional<IniValue> readValue(std::string_view raw)
{
    std::string text;
    bool quoted = false;
    bool isList = false;
    std::size_t significant = 0; // text up to here is not trailing blanks outside quotes
    for (std::size_t i = 0; i < raw.size();) {
        const char c = raw[i];
        if (c == '"') {
            quoted = !quoted;
            significant = text.size();
            ++i;
            continue;
        }
        if (!quoted && c == ';')
            break;
        if (c != '\\') {
            isList = isList || (!quoted && c == ',');
            text += c;
            if (quoted || !isBlank(c))
                significant = text.size();
            ++i;
            continue;
        }
        if (i + 1 >= raw.size())
            return std::nullopt;
        const char escaped = raw[i + 1];
        i += 2;
        switch (escaped) {
        case 'a':
            text += '\a';
            break;
        case 'b':
            text += '\b';
            break;
        case 'f':
            text += '\f';
            break;
        case 'n':
            text += '\n';
            break;
        case 'r':
            text += '\r';
            break;
        case 't':
            text += '\t';
            break;
        case 'v':
            text += '\v';
            break;
        case 'x': {
            char32_t code = 0;
            std::size_t digits = 0;
            for (; i < raw.size() && hexDigit(raw[i]) >= 0 && digits < 6; ++i, ++digits)
                code = code * 16 + char32_t(hexDigit(raw[i]));
            if (digits == 0 || !appendUtf8(text, code))
                return std::nullopt;
            break;
        }
        case '0': {
            char32_t code = 0;
            for (std::size_t digits = 0;
                 i < raw.size() && raw[i] >= '0' && raw[i] <= '7' && digits < 3; ++i, ++digits)
                code = code * 8 + char32_t(raw[i] - '0');
            appendUtf8(text, code);
            break;
        }
        default:
            // \\, \", \' and \? stand for themselves; so, leniently, does anything else.
            text += escaped;
            break;
        }
        significant = text.size();
    }
    if (quoted)
        return std::nullopt;
    text.resize(significant);
    if (isList)
        return IniValue{IniValue::Kind::other, std::string(raw)};
    // "@@" escapes a leading "@"; any other "@" opens a value of a QSettings type.
    if (text.starts_with("@@"))
        text.erase(0, 1);
    else if (text.starts_with('@'))
        return IniValue{IniValue::Kind::other, std::string(raw)};
    return IniValue::plain(std::move(text));
}

std::string escapedValue(const IniValue& value)
{
    if (value.kind == IniValue::Kind::other)
        return value.text;
    static constexpr char hex[] = "0123456789abcdef";
    const std::string_view text = value.text;
    std::string body = text.starts_with('@') ? "@" : "";
    bool quote = !text.empty() && (isBlank(text.front()) || isBlank(text.back()));
    bool afterHexEscape = false;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        // A hex escape takes every hex digit after it, so a digit that follows one is escaped too.
        const bool control = byte < 0x20 || byte == 0x7f;
        const bool hexEscape = control && c != '\n' && c != '\t' && c != '\r';
        if (hexEscape || (afterHexEscape && hexDigit(c) >= 0)) {
            body += "\\x";
            if (byte >= 0x10)
                body += hex[byte >> 4];
            body += hex[byte & 0xf];
            afterHexEscape = true;
            continue;
        }
        afterHexEscape = false;
        switch (c) {
        case '\\':
            body += "\\\\";
            break;
        case '"':
            body += "\\\"";
            break;
        case '\n':
            body += "\\n";
            break;
        case '\t':
            body += "\\t";
            break;
        case '\r':
            body += "\\r";
            break;
        case ',':
        case ';':
        case '=':
        case '#':
            quote = true;
            body += c;
            break;
        default:
            body += c;
            break;
        }
    }
    return quote ? "\"" + body + "\"" : body;
}

// A key is written back as "[first part]" and "rest=" lines; one that would not read back the same
// way (an empty part, blanks at a part's edge, a part that would start a comment or a section, an
// "=" in the rest, or a section named General) is not accepted in the first place.
bool isWritableKey(std::string_view key)
{
    const std::size_t slash = key.find('/');
    if (slash != std::string_view::npos &&
        (key.substr(0, slash) == generalSection || key.find('=', slash) != std::string_view::npos))
        return false;
    while (true) {
        const std::size_t end = key.find('/');
        const std::string_view part = key.substr(0, end);
        if (part.empty() || isBlank(part.front()) || isBlank(part.back()) ||
            std::string_view(";#[").find(part.front()) != std::string_view::npos)
            return false;
        if (end == std::string_view::npos)
            return true;
        key.remove_prefix(end + 1);
    }
}

} // namespace

IniDocument parseIni(std::string_view text)
{
    IniDocument document;
    if (text.starts_with("\xef\xbb\xbf"))
        text.remove_prefix(3);
    std::string section; // empty for General
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++number;
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const std::string_view content = trimmed(line);
        if (content.empty() || content.front() == ';' || content.front() == '#')
            continue;

        auto unread = [&] { document.unreadLines.push_back({number, excerptForLog(line, 60)}); };
        if (!isValidUtf8(line)) {
            unread();
            continue;
        }
        if (content.front() == '[') {
            if (!content.ends_with(']') || content.size() < 3) {
                unread();
                continue;
            }
            const std::string_view name = trimmed(content.substr(1, content.size() - 2));
            section = name == generalSection ? "" : std::string(name) + "/";
            continue;
        }
        const std::size_t equals = content.find('=');
        const std::string key = equals == std::string_view::npos
                                    ? std::string()
                                    : section + std::string(trimmed(content.substr(0, equals)));
        auto value =
            isWritableKey(key) ? readValue(trimmed(content.substr(equals + 1))) : std::nullopt;
        if (!value) {
            unread();
            continue;
        }
        document.values[key] = std::move(*value);
    }
    return document;
}

std::string writeIni(const IniValues& values)
{
    std::string general;
    std::map<std::string, std::string> sections;
    for (const auto& [key, value] : values) {
        const std::size_t slash = key.find('/');
        std::string line = key.substr(slash == std::string::npos ? 0 : slash + 1) + "=" +
                           escapedValue(value) + "\n";
        if (slash == std::string::npos)
            general += line;
        else
            sections[key.substr(0, slash)] += line;
    }
    std::string out;
    if (!general.empty())
        out = "[General]\n" + general;
    for (const auto& [name, lines] : sections)
        out += (out.empty() ? "[" : "\n[") + name + "]\n" + lines;
    return out;
}

} // namespace navro
