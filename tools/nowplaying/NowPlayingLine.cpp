#include "nowplaying/NowPlayingLine.h"

#include <charconv>
#include <cmath>

namespace navro {
namespace {

void appendString(std::string& out, std::string_view text)
{
    static constexpr char hex[] = "0123456789abcdef";
    out += '"';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (byte < 0x20 || byte == 0x7f) {
                out += "\\u00";
                out += hex[byte >> 4];
                out += hex[byte & 0xf];
            } else {
                out += c;
            }
        }
    }
    out += '"';
}

void appendNumber(std::string& out, double value)
{
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

class JsonObject {
public:
    JsonObject() { text_ = "{"; }

    void add(const char* key, const std::optional<std::string>& value)
    {
        if (value) {
            appendKey(key);
            appendString(text_, *value);
        }
    }
    void add(const char* key, const std::optional<double>& value)
    {
        if (value) {
            appendKey(key);
            appendNumber(text_, *value);
        }
    }
    void add(const char* key, const std::optional<std::int64_t>& value)
    {
        if (value) {
            appendKey(key);
            text_ += std::to_string(*value);
        }
    }
    std::string finish() { return text_ + "}"; }

private:
    void appendKey(const char* key)
    {
        if (text_.size() > 1)
            text_ += ',';
        appendString(text_, key);
        text_ += ':';
    }

    std::string text_;
};

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool startsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

} // namespace

std::string toJson(const PlayerReport& report, bool withArtwork)
{
    JsonObject object;
    object.add("title", report.title);
    object.add("artist", report.artist);
    object.add("album", report.album);
    object.add("duration", report.duration);
    object.add("elapsed", report.elapsed);
    object.add("rate", report.rate);
    object.add("timestamp", report.timestamp);
    if (withArtwork && report.artworkBytes)
        object.add("artwork", std::optional(base64(*report.artworkBytes)));
    object.add("artUrl", report.artUrl);
    object.add("bundle", report.bundle);
    object.add("app", report.app);
    object.add("player", report.player);
    object.add("error", report.error);
    return object.finish();
}

std::optional<std::string> LinePrinter::next(const PlayerReport& report)
{
    std::string artworkKey;
    if (report.artworkBytes)
        artworkKey = report.title.value_or("") + "|" + report.album.value_or("") + "|" +
                     std::to_string(report.artworkBytes->size());
    const bool withArtwork = report.artworkBytes && artworkKey != lastArtworkKey_;
    // Compared without the cover: the line after one that carried it is not new for lacking it.
    std::string line = toJson(report, false);
    if (line == lastLine_ && !withArtwork)
        return std::nullopt;
    lastLine_ = line;
    // Navro drops the artwork whenever the title changes; a line without a cover forgets the
    // last one sent, so that the cover of a track that comes back is sent again.
    lastArtworkKey_ = artworkKey;
    if (withArtwork)
        line = toJson(report, true);
    return line + '\n';
}

std::string base64(std::string_view bytes)
{
    static constexpr char alphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3) {
        const std::uint32_t group = std::uint32_t(std::uint8_t(bytes[i])) << 16 |
                                    std::uint32_t(std::uint8_t(bytes[i + 1])) << 8 |
                                    std::uint8_t(bytes[i + 2]);
        out += alphabet[group >> 18];
        out += alphabet[(group >> 12) & 63];
        out += alphabet[(group >> 6) & 63];
        out += alphabet[group & 63];
    }
    const std::size_t rest = bytes.size() - i;
    if (rest > 0) {
        std::uint32_t group = std::uint32_t(std::uint8_t(bytes[i])) << 16;
        if (rest == 2)
            group |= std::uint32_t(std::uint8_t(bytes[i + 1])) << 8;
        out += alphabet[group >> 18];
        out += alphabet[(group >> 12) & 63];
        out += rest == 2 ? alphabet[(group >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

std::optional<std::string> localPathOfUrl(std::string_view url)
{
    constexpr std::string_view scheme = "file://";
    if (!startsWith(url, scheme))
        return std::nullopt;
    std::string_view rest = url.substr(scheme.size());
    if (startsWith(rest, "localhost/"))
        rest.remove_prefix(std::string_view("localhost").size());
    if (!startsWith(rest, "/"))
        return std::nullopt; // another host's file, or no path
    std::string path;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        if (rest[i] == '%' && i + 2 < rest.size() && hexValue(rest[i + 1]) >= 0 &&
            hexValue(rest[i + 2]) >= 0) {
            path += char(hexValue(rest[i + 1]) * 16 + hexValue(rest[i + 2]));
            i += 2;
        } else if (rest[i] == '?' || rest[i] == '#') {
            break;
        } else {
            path += rest[i];
        }
    }
    // A path with a NUL in it names no file.
    if (path.find('\0') != std::string::npos)
        return std::nullopt;
    return path;
}

bool isWebUrl(std::string_view url)
{
    return startsWith(url, "http://") || startsWith(url, "https://");
}

} // namespace navro
