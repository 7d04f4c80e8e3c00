#include "data/TodoRules.h"

#include <algorithm>
#include <numeric>

namespace navro {
namespace {

// What the comparison reads of one entry, worked out once per call instead of per comparison.
struct Ranked {
    bool done;
    bool overdue;
    int priority;
    bool hasDue;
    WallTime due;
    std::size_t position;
};

bool showsBefore(const Ranked& a, const Ranked& b)
{
    if (a.done != b.done)
        return !a.done;
    // Done ones keep the order in which they were completed (toggle appends them).
    if (a.done)
        return a.position < b.position;
    if (a.overdue != b.overdue)
        return a.overdue;
    if (a.priority != b.priority)
        return a.priority > b.priority;
    if (a.hasDue != b.hasDue)
        return a.hasDue;
    if (a.hasDue && a.due != b.due)
        return a.due < b.due;
    return a.position < b.position;
}

} // namespace

std::vector<std::size_t> displayOrder(const std::vector<TodoSortKey>& stored, WallTime now)
{
    std::vector<Ranked> ranked;
    ranked.reserve(stored.size());
    for (std::size_t position = 0; position < stored.size(); ++position) {
        const TodoSortKey& key = stored[position];
        ranked.push_back({key.done, key.due && *key.due < now, static_cast<int>(key.priority),
                          key.due.has_value(), key.due.value_or(WallTime{}), position});
    }
    // The position breaks every tie, so the order is total and the sort need not be stable.
    std::sort(ranked.begin(), ranked.end(), showsBefore);
    std::vector<std::size_t> order;
    order.reserve(ranked.size());
    for (const Ranked& entry : ranked)
        order.push_back(entry.position);
    return order;
}

std::vector<DuePreset> offeredDuePresets(int localHour)
{
    std::vector<DuePreset> presets{DuePreset::inOneHour};
    if (localHour <= 16)
        presets.push_back(DuePreset::thisEvening);
    else if (localHour <= 20)
        presets.push_back(DuePreset::tonight);
    presets.insert(presets.end(),
                   {DuePreset::tomorrowMorning, DuePreset::tomorrowEvening, DuePreset::nextWeek});
    return presets;
}

std::string_view duePresetTitle(DuePreset preset, bool arabic)
{
    switch (preset) {
    case DuePreset::inOneHour:
        return arabic ? "بعد ساعة" : "In 1 hour";
    case DuePreset::thisEvening:
        return arabic ? "هذا المساء (6 م)" : "This evening (6 PM)";
    case DuePreset::tonight:
        return arabic ? "الليلة (9 م)" : "Tonight (9 PM)";
    case DuePreset::tomorrowMorning:
        return arabic ? "صباح الغد (9 ص)" : "Tomorrow morning (9 AM)";
    case DuePreset::tomorrowEvening:
        return arabic ? "مساء الغد (6 م)" : "Tomorrow evening (6 PM)";
    case DuePreset::nextWeek:
        return arabic ? "الأسبوع القادم" : "Next week";
    }
    return {};
}

} // namespace navro
