#pragma once

#include "nowplaying/NowPlayingLine.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace navro {

// A value of a D-Bus variant in the few shapes media players use; other shapes read as empty.
using BusValue =
    std::variant<std::monostate, std::string, std::int64_t, double, bool, std::vector<std::string>>;
using BusProperties = std::map<std::string, BusValue>;

inline constexpr const char* mprisPrefix = "org.mpris.MediaPlayer2.";
inline constexpr const char* mprisPath = "/org/mpris/MediaPlayer2";
inline constexpr const char* mprisApplicationInterface = "org.mpris.MediaPlayer2";
inline constexpr const char* mprisPlayerInterface = "org.mpris.MediaPlayer2.Player";

// What is known about one media player on the bus, from its properties and signals.
struct MprisPlayer {
    std::string name;  // its well-known bus name, org.mpris.MediaPlayer2.…
    std::string owner; // the unique name that sends its signals
    std::string identity, desktopEntry;
    std::string playbackStatus;
    double rate = 1;
    std::optional<std::string> title, album, trackId, artUrl;
    std::vector<std::string> artists;
    std::optional<double> length; // seconds
    std::optional<std::int64_t> positionMicros;
    std::int64_t positionReadAt = 0; // milliseconds since 1970
    std::optional<std::string> error;

    bool isPlaying() const { return playbackStatus == "Playing"; }

    // Properties of org.mpris.MediaPlayer2.Player and of org.mpris.MediaPlayer2, from GetAll or
    // PropertiesChanged; keys not given keep their value. `metadata` is the Metadata property
    // when it was among them (a nested dictionary, read apart).
    void applyPlayerProperties(const BusProperties& properties, const BusProperties* metadata);
    void applyApplicationProperties(const BusProperties& properties);
    void setPosition(std::int64_t micros, std::int64_t atMillis);

    // The report for the line protocol, without the cover's bytes (reading a file is the
    // caller's business).
    PlayerReport report() const;
};

} // namespace navro
