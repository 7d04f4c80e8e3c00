#pragma once

#include "app/Clock.h"
#include "notch/Meeting.h"

#include <optional>
#include <vector>

namespace navro {

// The occurrences that have not ended by `now` and begin before `until` (the end of tomorrow),
// by start: what the Calendar tab lists. Occurrences already under way stay until they end.
std::vector<Meeting> upcomingEvents(std::vector<Meeting> events, WallTime now, WallTime until);

// The first of `upcoming`, in its order, that is not all-day and has not ended.
std::optional<Meeting> chooseNextMeeting(const std::vector<Meeting>& upcoming, WallTime now);

// When the list above next changes with time alone: the earliest end still ahead.
std::optional<WallTime> nextEnd(const std::vector<Meeting>& upcoming, WallTime now);

} // namespace navro
