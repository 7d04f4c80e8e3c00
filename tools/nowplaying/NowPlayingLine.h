#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace navro {

// What the watcher says about the player it reports. Absent fields are left out of the line.
struct PlayerReport {
    std::optional<std::string> title, artist, album;
    std::optional<double> duration, elapsed, rate; // seconds, seconds at timestamp, 0 or the rate
    std::optional<std::int64_t> timestamp;         // milliseconds since 1970
    std::optional<std::string> artworkBytes;       // the cover file's contents
    std::optional<std::string> artUrl;             // a cover on the web, for Navro to download
    std::optional<std::string> bundle, app;        // desktop entry id, the player's own name
    std::optional<std::string> player;             // bus name, for the transport commands
    std::optional<std::string> error;              // what went wrong while reading

    bool operator==(const PlayerReport&) const = default;
};

// One JSON object on one line (no line feed): the report's fields, with the artwork as base64
// when `withArtwork`.
std::string toJson(const PlayerReport& report, bool withArtwork);

// Decides what goes out: a line only when it differs from the last one printed, and the artwork
// only when its key (title, album and byte count) differs from that of the last line printed,
// so that cover bytes cross the pipe once per track.
class LinePrinter {
public:
    // The line to print for the report (with its line feed), or nothing when it would repeat the
    // last one.
    std::optional<std::string> next(const PlayerReport& report);

private:
    std::string lastLine_; // without the cover
    std::string lastArtworkKey_;
};

std::string base64(std::string_view bytes);

// The local path of a file:// URL (percent escapes decoded; an empty host or "localhost" only).
std::optional<std::string> localPathOfUrl(std::string_view url);
bool isWebUrl(std::string_view url);

} // namespace navro
