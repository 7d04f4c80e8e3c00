#pragma once

#include "app/Clock.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace navro {
enum class Priority { none = 0, low = 1, medium = 2, high = 3 };
struct TodoSortKey {
    bool done = false;
    Priority priority = Priority::none;
    std::optional<WallTime> due; // WallTime as in app/Clock.h
};
// Display order of the stored list, as positions into `stored`, first shown first.
std::vector<std::size_t> displayOrder(const std::vector<TodoSortKey>& stored, WallTime now);
enum class DuePreset {
    inOneHour,
    thisEvening,
    tonight,
    tomorrowMorning,
    tomorrowEvening,
    nextWeek
};
// The presets offered at a local wall-clock hour (0–23), in menu order.
std::vector<DuePreset> offeredDuePresets(int localHour);
std::string_view duePresetTitle(DuePreset preset, bool arabic);
} // namespace navro
