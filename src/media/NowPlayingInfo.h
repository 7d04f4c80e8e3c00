#pragma once

#include "app/Clock.h"

#include <optional>
#include <string>

// src/media/NowPlayingInfo.h
namespace navro {
struct NowPlayingInfo {
    std::string title, artist, album;
    double duration = 0, elapsed = 0, rate = 0;
    std::optional<WallTime> timestamp; // WallTime as in app/Clock.h
    std::optional<std::string> bundleID, appName;
    bool operator==(const NowPlayingInfo&) const = default;
};
// The position at t: extrapolated while rate > 0 and a timestamp is known, then no later than
// duration when duration > 0, then no earlier than 0. 0 without info.
double elapsedAt(const std::optional<NowPlayingInfo>& info, WallTime t);
} // namespace navro
