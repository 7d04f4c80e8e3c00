#pragma once

#include "app/Clock.h"
#include "notch/Meeting.h"

#include <chrono>
#include <ctime>
#include <string>
#include <vector>

namespace navro::calendar_test {

// An instant given in UTC.
inline WallTime utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0)
{
    using namespace std::chrono;
    return WallTime(
        sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day))
            .time_since_epoch() +
        hours(hour) + minutes(minute));
}

inline std::string isoUtc(WallTime at)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(at));
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%MZ", &fields);
    return text;
}

// "title start→end" with "(all day)" where it is one, for readable comparisons.
inline std::vector<std::string> describe(const std::vector<Meeting>& events)
{
    std::vector<std::string> lines;
    for (const Meeting& event : events)
        lines.push_back(event.title + " " + isoUtc(event.start) + "→" + isoUtc(event.end) +
                        (event.isAllDay ? " (all day)" : ""));
    return lines;
}

// One event with the given properties after its UID and SUMMARY.
inline std::string event(const std::string& uid, const std::string& title,
                         const std::string& properties)
{
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nSUMMARY:" + title + "\r\n" + properties +
           "END:VEVENT\r\n";
}

inline std::vector<std::string> titles(const std::vector<Meeting>& events)
{
    std::vector<std::string> list;
    for (const Meeting& event : events)
        list.push_back(event.title);
    return list;
}

// An iCalendar document around the given lines.
inline std::string document(const std::string& body)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Navro tests//EN\r\n" + body +
           "END:VCALENDAR\r\n";
}

} // namespace navro::calendar_test
