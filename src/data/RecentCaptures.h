#pragma once

#include "app/Clock.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

enum class CaptureKind { screenshot, recording };

// A saved screenshot or recording; the file itself lives in the user's pictures or videos.
struct Capture {
    std::string path;
    CaptureKind kind = CaptureKind::screenshot;
    WallTime date;

    bool operator==(const Capture&) const = default;
};

inline constexpr std::size_t recentCapturesLimit = 50;

// Puts `capture` first, drops an older entry of the same path and keeps the newest `limit`.
void addRecentCapture(std::vector<Capture>& list, Capture capture,
                      std::size_t limit = recentCapturesLimit);

// "captures.json": {"captures":[{"path","kind":"screenshot"|"recording","date"}]}, newest first,
// dates as seconds since 2001-01-01 00:00:00 UTC.
std::string encodeRecentCaptures(const std::vector<Capture>& list);

struct RecentCapturesDecoding {
    std::optional<std::vector<Capture>> captures;
    std::string error; // why there are none, fit for a log line
};

// Entries that cannot be used (no absolute path, an unknown kind, no date, a path seen before)
// are left out; more than recentCapturesLimit are cut. Anything but the object above fails.
RecentCapturesDecoding decodeRecentCaptures(std::string_view bytes);

// The moment as the local wall clock shows it, for file names.
struct LocalMoment {
    int year, month, day, hour, minute, second;
};

// "Screenshot 2026-05-10 at 14.03.09.png", "Recording 2026-05-10 at 14.03.09.mp4"; with
// `attempt` 2 and up, " (2)" before the extension, for a name that is taken.
std::string captureFileName(CaptureKind kind, const LocalMoment& moment, int attempt = 1);

} // namespace navro
