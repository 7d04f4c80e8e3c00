#pragma once

#include "app/Clock.h"

#include <cstdint>
#include <optional>
#include <string>

namespace navro {

// One calendar event as the closed notch needs it.
struct Meeting {
    std::string id;
    std::string title;
    WallTime start;
    WallTime end;
    bool isAllDay = false;
    std::string calendarName;
    std::optional<std::uint32_t> colour; // 0xRRGGBB of the calendar
    std::optional<std::string> location;
    std::optional<std::string> joinLink; // a video-call address found in the event

    bool operator==(const Meeting&) const = default;
};

} // namespace navro
