#include "calendar/ICalendarReader.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

using namespace std::chrono;

// A heavy subscription of about 5 MB: 5,000 events over six years, two in three recurring
// (weekly, daily, every other week, monthly) in a handful of zones, with exception dates,
// moved instances and invitation-sized descriptions with a join link.
std::string heavyCalendar()
{
    const char* zones[] = {"Europe/Berlin", "America/New_York", "Asia/Riyadh", "Asia/Tokyo", "UTC"};
    const char* rules[] = {"FREQ=WEEKLY;BYDAY=MO,WE,FR", "FREQ=DAILY", "FREQ=WEEKLY;INTERVAL=2",
                           "FREQ=MONTHLY;BYDAY=2TU"};
    const std::string invitation(720, 'x');
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:Company\r\n";
    for (int i = 0; i < 5000; ++i) {
        const int year = 2020 + i % 6;
        const int month = 1 + i % 12;
        const int day = 1 + i % 28;
        char start[32];
        std::snprintf(start, sizeof start, "%04d%02d%02dT%02d%02d00", year, month, day, 8 + i % 10,
                      (i % 4) * 15);
        text += "BEGIN:VEVENT\r\nUID:event-" + std::to_string(i) + "@example.com\r\n";
        text += "SUMMARY:Meeting number " + std::to_string(i) + "\r\n";
        text += std::string("DTSTART;TZID=") + zones[i % 5] + ":" + start + "\r\n";
        text += "DURATION:PT45M\r\n";
        if (i % 3 != 0) {
            text += std::string("RRULE:") + rules[i % 4] + "\r\n";
            text += std::string("EXDATE;TZID=") + zones[i % 5] + ":" + start + "\r\n";
        }
        text += "LOCATION:Room " + std::to_string(i % 40) + "\r\n";
        text += "DESCRIPTION:Agenda " + invitation + "\\nJoin https://us02web.zoom.us/j/8" +
                std::to_string(100000000 + i) + "\r\n";
        text += "END:VEVENT\r\n";
    }
    return text + "END:VCALENDAR\r\n";
}

// What the calendar service does for each change of a document and at each midnight: read it
// and expand it into today and tomorrow.
void readAndExpandTwoDays(benchmark::State& state)
{
    const std::string text = heavyCalendar();
    const navro::WallTime from(
        duration_cast<milliseconds>(sys_days(2026y / 3 / 10).time_since_epoch()));
    std::size_t found = 0;
    for (auto _ : state) {
        auto result = navro::readICalendar(text, from, from + days(2), "Asia/Riyadh");
        found = result.reading ? result.reading->events.size() : 0;
        benchmark::DoNotOptimize(result);
    }
    state.counters["megabytes"] = double(text.size()) / 1e6;
    state.counters["occurrences"] = double(found);
}
BENCHMARK(readAndExpandTwoDays)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
