#include "calendar/UpcomingEvents.h"

#include <algorithm>
#include <tuple>

namespace navro {

std::vector<Meeting> upcomingEvents(std::vector<Meeting> events, WallTime now, WallTime until)
{
    std::erase_if(events, [&](const Meeting& event) {
        // A moment-long event counts until its moment has passed.
        const bool ended = event.end > event.start ? event.end <= now : event.start < now;
        return ended || event.start >= until;
    });
    std::stable_sort(events.begin(), events.end(), [](const Meeting& a, const Meeting& b) {
        return std::tie(a.start, a.end) < std::tie(b.start, b.end);
    });
    return events;
}

std::optional<Meeting> chooseNextMeeting(const std::vector<Meeting>& upcoming, WallTime now)
{
    const auto found = std::find_if(upcoming.begin(), upcoming.end(), [&](const Meeting& event) {
        return !event.isAllDay && event.end > now;
    });
    return found != upcoming.end() ? std::optional(*found) : std::nullopt;
}

std::optional<WallTime> nextEnd(const std::vector<Meeting>& upcoming, WallTime now)
{
    std::optional<WallTime> earliest;
    for (const Meeting& event : upcoming) {
        const WallTime ends = std::max(event.end, event.start);
        if (ends >= now && (!earliest || ends < *earliest))
            earliest = ends;
    }
    return earliest;
}

} // namespace navro
