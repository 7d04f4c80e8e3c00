#pragma once

#include "app/Clock.h"
#include "notch/Meeting.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// What one iCalendar document holds for a span of time.
struct CalendarReading {
    std::string name;                    // X-WR-CALNAME, empty when the document has none
    std::optional<std::uint32_t> colour; // X-APPLE-CALENDAR-COLOR as 0xRRGGBB
    // Every occurrence that overlaps the span, by start (then end, then title). Each carries its
    // id (the event's UID and its start), title, times, all-day flag, location and join link; the
    // calendar's name and colour are the caller's to fill in.
    std::vector<Meeting> events;
};

struct CalendarReadResult {
    std::optional<CalendarReading> reading;
    std::string error; // why there is no reading, in words for a log line
};

// Reads `text` with libical and expands every event into its occurrences in [from, to):
// recurrence rules and dates minus exception dates, instances moved or changed by a RECURRENCE-ID
// in their place, cancelled events and instances left out. Times with a TZID read in that zone
// (its VTIMEZONE, else the system's zone of that name), UTC times as UTC, and floating times and
// all-day dates on the clock of `localZoneID` (UTC when that is unknown).
//
// Not to be called from two threads at once: libical's zone cache is shared.
CalendarReadResult readICalendar(std::string_view text, WallTime from, WallTime to,
                                 const std::string& localZoneID);

// "#RRGGBB" or "#RRGGBBAA" (the alpha left out) as 0xRRGGBB.
std::optional<std::uint32_t> parseHexColour(std::string_view text);

} // namespace navro
