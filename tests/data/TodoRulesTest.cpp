#include "data/TodoRules.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace navro {
namespace {

using namespace std::chrono_literals;
using Order = std::vector<std::size_t>;

const WallTime now = WallTime(std::chrono::hours(24 * 365 * 56));

TodoSortKey open(Priority priority = Priority::none, std::optional<WallTime> due = {})
{
    return {false, priority, due};
}

TodoSortKey done(Priority priority = Priority::none, std::optional<WallTime> due = {})
{
    return {true, priority, due};
}

TEST(TodoDisplayOrder, FollowsTheRulesInTheirOrder)
{
    struct Case {
        const char* what;
        std::vector<TodoSortKey> stored;
        Order expected;
    };
    const std::vector<Case> cases = {
        {"open before done; done ones keep their completion order",
         {done(), open(), done(Priority::high), open()},
         {1, 3, 0, 2}},
        {"an overdue low one before a high one that is not overdue",
         {open(Priority::high, now + 1h), open(Priority::low, now - 1min)},
         {1, 0}},
        {"equal priority: a deadline next week before none",
         {open(Priority::medium), open(Priority::medium, now + 24h * 7)},
         {1, 0}},
        {"higher priority before a deadline",
         {open(Priority::none, now + 1h), open(Priority::low)},
         {1, 0}},
        {"the earlier of two deadlines first", {open({}, now + 2h), open({}, now + 1h)}, {1, 0}},
        {"two overdue ones: priority, then the earlier deadline",
         {open(Priority::low, now - 1h), open(Priority::high, now - 1min),
          open(Priority::low, now - 2h)},
         {1, 2, 0}},
        {"a deadline at this very moment is not overdue yet",
         {open(Priority::high), open(Priority::low, now)},
         {0, 1}},
        {"ties keep the stored order (newest first)",
         {open(Priority::low), open(Priority::low), open(Priority::low, now + 1h),
          open(Priority::low, now + 1h)},
         {2, 3, 0, 1}},
        {"a done one stays behind the open ones whatever its deadline and priority",
         {done(Priority::high, now - 24h), open()},
         {1, 0}},
        {"nothing", {}, {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(displayOrder(c.stored, now), c.expected) << c.what;
}

// Whatever the list, the order is the stored list rearranged, and reading it from the top no rule
// is ever broken between neighbours.
TEST(TodoDisplayOrder, RandomListsComeOutConsistently)
{
    std::mt19937 random(20240501);
    for (int round = 0; round < 300; ++round) {
        std::vector<TodoSortKey> stored(random() % 12);
        for (auto& key : stored) {
            key.done = random() % 3 == 0;
            key.priority = static_cast<Priority>(random() % 4);
            if (random() % 2)
                key.due = now + std::chrono::minutes(int(random() % 7) - 3);
        }
        const Order order = displayOrder(stored, now);
        Order sorted = order;
        std::sort(sorted.begin(), sorted.end());
        Order positions(stored.size());
        for (std::size_t i = 0; i < positions.size(); ++i)
            positions[i] = i;
        ASSERT_EQ(sorted, positions);

        for (std::size_t i = 1; i < order.size(); ++i) {
            const TodoSortKey& a = stored[order[i - 1]];
            const TodoSortKey& b = stored[order[i]];
            ASSERT_FALSE(a.done && !b.done) << "a done one above an open one";
            if (a.done && b.done) {
                ASSERT_LT(order[i - 1], order[i]) << "done ones out of completion order";
                continue;
            }
            if (b.done)
                continue;
            const bool aOverdue = a.due && *a.due < now;
            const bool bOverdue = b.due && *b.due < now;
            ASSERT_FALSE(!aOverdue && bOverdue) << "an overdue one below one that is not";
            if (aOverdue != bOverdue)
                continue;
            ASSERT_GE(a.priority, b.priority);
            if (a.priority != b.priority)
                continue;
            ASSERT_FALSE(!a.due && b.due) << "no deadline above a deadline";
            if (a.due.has_value() != b.due.has_value())
                continue;
            if (a.due && *a.due != *b.due) {
                ASSERT_LT(*a.due, *b.due);
                continue;
            }
            ASSERT_LT(order[i - 1], order[i]) << "a tie out of stored order";
        }
    }
}

TEST(DuePresets, SameDayChoicesDependOnTheHour)
{
    using enum DuePreset;
    const std::vector<DuePreset> beforeFive{inOneHour, thisEvening, tomorrowMorning,
                                            tomorrowEvening, nextWeek};
    const std::vector<DuePreset> evening{inOneHour, tonight, tomorrowMorning, tomorrowEvening,
                                         nextWeek};
    const std::vector<DuePreset> late{inOneHour, tomorrowMorning, tomorrowEvening, nextWeek};
    for (int hour = 0; hour < 24; ++hour) {
        const auto& expected = hour <= 16 ? beforeFive : hour <= 20 ? evening : late;
        EXPECT_EQ(offeredDuePresets(hour), expected) << "at " << hour << ":00";
    }
}

TEST(DuePresets, TitlesInBothLanguages)
{
    using enum DuePreset;
    const std::vector<std::tuple<DuePreset, std::string_view, std::string_view>> titles = {
        {inOneHour, "In 1 hour", "بعد ساعة"},
        {thisEvening, "This evening (6 PM)", "هذا المساء (6 م)"},
        {tonight, "Tonight (9 PM)", "الليلة (9 م)"},
        {tomorrowMorning, "Tomorrow morning (9 AM)", "صباح الغد (9 ص)"},
        {tomorrowEvening, "Tomorrow evening (6 PM)", "مساء الغد (6 م)"},
        {nextWeek, "Next week", "الأسبوع القادم"},
    };
    for (const auto& [preset, english, arabic] : titles) {
        EXPECT_EQ(duePresetTitle(preset, false), english);
        EXPECT_EQ(duePresetTitle(preset, true), arabic);
    }
}

} // namespace
} // namespace navro
