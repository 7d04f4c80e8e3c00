#include "data/DueCalendar.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

WallTime utc(int y, unsigned m, unsigned d, int h, int min = 0)
{
    return WallTime(sys_days(year(y) / month(m) / day(d)) + hours(h) + minutes(min));
}

std::string shown(WallTime at, const DueCalendar& calendar)
{
    const auto local = calendar.localDateTime(at);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", local.year, local.month, local.day,
                  local.hour, local.minute);
    return text;
}

TEST(DueCalendar, UsesTheNamedZoneAndFallsBackToTheMachinesOwn)
{
    EXPECT_EQ(DueCalendar("America/New_York").zoneID(), "America/New_York");
    EXPECT_FALSE(DueCalendar("Not/AZone").zoneID().empty());
    EXPECT_FALSE(DueCalendar("").zoneID().empty());
}

// Presets are wall-clock times: across a change of summer time "tomorrow 09:00" is still 09:00 on
// the clock, so the instant moves by 23 or 25 hours, never by 24.
TEST(DueCalendar, PresetMomentsKeepTheWallClockAcrossSummerTime)
{
    struct Case {
        const char* zone;
        WallTime now;
        DuePreset preset;
        WallTime expected;
    };
    using enum DuePreset;
    const std::vector<Case> cases = {
        // New York springs forward on 2026-03-08 at 02:00; now is 20:00 EST the evening before.
        {"America/New_York", utc(2026, 3, 8, 1), tomorrowMorning, utc(2026, 3, 8, 13)},
        {"America/New_York", utc(2026, 3, 8, 1), tomorrowEvening, utc(2026, 3, 8, 22)},
        {"America/New_York", utc(2026, 3, 8, 1), nextWeek, utc(2026, 3, 14, 13)},
        {"America/New_York", utc(2026, 3, 8, 1), inOneHour, utc(2026, 3, 8, 2)},
        // It falls back on 2026-11-01; now is 22:00 EDT the evening before.
        {"America/New_York", utc(2026, 11, 1, 2), tomorrowMorning, utc(2026, 11, 1, 14)},
        // Berlin changes on 2026-03-29; 10:00 CET that Saturday, the evening still in winter.
        {"Europe/Berlin", utc(2026, 3, 28, 9), thisEvening, utc(2026, 3, 28, 17)},
        {"Europe/Berlin", utc(2026, 3, 28, 16), tonight, utc(2026, 3, 28, 20)},
        {"Europe/Berlin", utc(2026, 3, 28, 9), tomorrowMorning, utc(2026, 3, 29, 7)},
        // Riyadh has no summer time; the 31st of the month rolls into the next.
        {"Asia/Riyadh", utc(2026, 1, 31, 20), tomorrowMorning, utc(2026, 2, 1, 6)},
        {"Asia/Riyadh", utc(2026, 12, 28, 9), nextWeek, utc(2027, 1, 4, 6)},
    };
    for (const Case& c : cases) {
        DueCalendar calendar(c.zone);
        EXPECT_EQ(calendar.presetMoment(c.preset, c.now), c.expected)
            << c.zone << " preset " << static_cast<int>(c.preset) << " got "
            << shown(calendar.presetMoment(c.preset, c.now), calendar);
    }
}

TEST(DueCalendar, PickedTimesThatTheClockSkipsOrRepeats)
{
    DueCalendar calendar("America/New_York");
    // 02:30 does not exist on 2026-03-08: the first time after the gap, 03:00 EDT.
    EXPECT_EQ(calendar.instantOf({2026, 3, 8, 2, 30}), utc(2026, 3, 8, 7));
    // 01:30 happens twice on 2026-11-01: the first, still EDT.
    EXPECT_EQ(calendar.instantOf({2026, 11, 1, 1, 30}), utc(2026, 11, 1, 5, 30));
    // Fields round-trip through the wall clock.
    const LocalDateTime local{2026, 7, 4, 18, 45};
    EXPECT_EQ(calendar.localDateTime(*calendar.instantOf(local)), local);
    // Roll-over, and fields beyond any calendar.
    EXPECT_EQ(calendar.instantOf({2026, 2, 29, 9, 0}), calendar.instantOf({2026, 3, 1, 9, 0}));
    EXPECT_EQ(calendar.instantOf({2147483647, 1, 1, 0, 0}), std::nullopt);
    EXPECT_EQ(calendar.instantOf({2026, 1, -2147483647, 0, 0}), std::nullopt);
}

TEST(DueCalendar, DeadlineLabelsInEnglishAndArabic)
{
    DueCalendar calendar("Asia/Riyadh");      // UTC+3
    const WallTime now = utc(2026, 5, 10, 9); // 12:00 local
    struct Case {
        WallTime due;
        bool overdue;
        const char* english;
        const char* arabic;
    };
    const std::vector<Case> cases = {
        {utc(2026, 5, 10, 18), false, "Today 9:00\u202fPM", "اليوم ٩:٠٠ م"},
        {utc(2026, 5, 10, 20, 59), false, "Today 11:59\u202fPM", "اليوم ١١:٥٩ م"},
        {utc(2026, 5, 10, 21), false, "Tomorrow 12:00\u202fAM", "غداً ١٢:٠٠ ص"},
        {utc(2026, 5, 9, 6, 5), true, "Overdue · Yesterday 9:05\u202fAM", "متأخرة · أمس ٩:٠٥ ص"},
        {utc(2026, 5, 20, 6), false, "May 20, 9:00\u202fAM", "٢٠ مايو، ٩:٠٠ ص"},
        {utc(2027, 1, 3, 6), false, "Jan 3, 2027, 9:00\u202fAM", "٣ يناير ٢٠٢٧، ٩:٠٠ ص"},
        {utc(2026, 5, 8, 6), true, "Overdue · May 8, 9:00\u202fAM", "متأخرة · ٨ مايو، ٩:٠٠ ص"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(calendar.deadlineLabel(c.due, now, c.overdue, false), c.english);
        EXPECT_EQ(calendar.deadlineLabel(c.due, now, c.overdue, true), c.arabic);
    }
}

} // namespace
} // namespace navro
