#pragma once

#include "app/Clock.h"
#include "data/TodoRules.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class Calendar;
class DateFormat;
U_NAMESPACE_END

namespace navro {

// A reading of the wall clock: month 1–12, hour 0–23.
struct LocalDateTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;

    bool operator==(const LocalDateTime&) const = default;
};

// To-do deadlines on the wall clock of one time zone: the moments of the due presets, the
// conversions of a date-and-time picker, and the label a deadline is shown with.
//
// Days are counted on the wall clock, so "tomorrow 09:00" is 09:00 whatever the clock did
// overnight, even when the day has 23 or 25 hours.
class DueCalendar {
public:
    // `zoneID` as the system names it ("Europe/Berlin"); empty or unknown means the zone the
    // machine is in as ICU detects it.
    explicit DueCalendar(std::string_view zoneID);
    ~DueCalendar();
    DueCalendar(const DueCalendar&) = delete;
    DueCalendar& operator=(const DueCalendar&) = delete;

    // The zone in use, as ICU names it.
    std::string zoneID() const;

    LocalDateTime localDateTime(WallTime at) const;
    // The instant at which the wall clock shows `local` (seconds 0). A time that the clock skips
    // is taken as the first valid one after it; a time it shows twice as the first of the two.
    // Out-of-range fields roll over (day 32 is the next month's first). None when the fields
    // are far outside any calendar.
    std::optional<WallTime> instantOf(const LocalDateTime& local) const;

    WallTime presetMoment(DuePreset preset, WallTime now) const;

    // "Today 9:00 PM", "Tomorrow …", "Yesterday …", otherwise "Mar 5, 9:00 PM" (with the year
    // when it is not the current one); "Overdue · " before it when `overdue`. Arabic texts with
    // the Arabic locale's digits when `arabic`.
    std::string deadlineLabel(WallTime due, WallTime now, bool overdue, bool arabic) const;

private:
    enum class Pattern { time, date, dateWithYear };
    const icu::DateFormat* format(Pattern pattern, bool arabic) const;
    std::string formatted(Pattern pattern, bool arabic, WallTime at) const;
    std::string newDeadlineLabel(WallTime due, WallTime now, bool overdue, bool arabic) const;
    int dayNumber(WallTime at) const;

    struct LabelKey {
        WallTime due;
        int today;
        bool overdue;
        bool arabic;
        auto operator<=>(const LabelKey&) const = default;
    };

    std::unique_ptr<icu::Calendar> calendar_;
    mutable std::unique_ptr<icu::DateFormat> formats_[3][2];
    // A list is labelled again on every change, mostly with the labels it had: formatting costs
    // far more than a look-up.
    mutable std::map<LabelKey, std::string> labels_;
};

} // namespace navro
