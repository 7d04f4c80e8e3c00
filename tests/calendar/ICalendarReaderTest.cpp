#include "calendar/ICalendarReader.h"

#include "CalendarTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace calendar_test;
using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::Not;

const std::string easternZone = "BEGIN:VTIMEZONE\r\nTZID:Office Eastern\r\n"
                                "BEGIN:STANDARD\r\nDTSTART:19701101T020000\r\n"
                                "RRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\r\n"
                                "TZOFFSETFROM:-0400\r\nTZOFFSETTO:-0500\r\nEND:STANDARD\r\n"
                                "BEGIN:DAYLIGHT\r\nDTSTART:19700308T020000\r\n"
                                "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\r\n"
                                "TZOFFSETFROM:-0500\r\nTZOFFSETTO:-0400\r\nEND:DAYLIGHT\r\n"
                                "END:VTIMEZONE\r\n";

const std::string weeklyWithExceptions =
    event("standup", "Standup",
          "DTSTART;TZID=Europe/Berlin:20240101T100000\r\n"
          "DTEND;TZID=Europe/Berlin:20240101T101500\r\n"
          "RRULE:FREQ=WEEKLY;BYDAY=MO\r\nEXDATE;TZID=Europe/Berlin:20240108T100000\r\n") +
    event("standup", "Moved standup",
          "RECURRENCE-ID;TZID=Europe/Berlin:20240115T100000\r\n"
          "DTSTART;TZID=Europe/Berlin:20240115T140000\r\n"
          "DTEND;TZID=Europe/Berlin:20240115T143000\r\n") +
    event("standup", "Standup",
          "STATUS:CANCELLED\r\nRECURRENCE-ID;TZID=Europe/Berlin:20240129T100000\r\n"
          "DTSTART;TZID=Europe/Berlin:20240129T100000\r\n");

struct ReadCase {
    const char* name;
    std::string localZone;
    WallTime from, to;
    std::string body;
    std::vector<std::string> expected;
};

class ReadTable : public ::testing::TestWithParam<ReadCase> {};

TEST_P(ReadTable, ExpandsIntoTheOccurrencesOfTheSpan)
{
    const ReadCase& c = GetParam();
    const auto result = readICalendar(document(c.body), c.from, c.to, c.localZone);
    ASSERT_TRUE(result.reading) << result.error;
    EXPECT_THAT(describe(result.reading->events), ElementsAreArray(c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, ReadTable,
    ::testing::Values(
        ReadCase("WeeklyWithExceptionOverrideAndCancelledInstance", "Asia/Riyadh", utc(2024, 1, 7),
                 utc(2024, 2, 6), weeklyWithExceptions,
                 {"Moved standup 2024-01-15T13:00Z→2024-01-15T13:30Z",
                  "Standup 2024-01-22T09:00Z→2024-01-22T09:15Z",
                  "Standup 2024-02-05T09:00Z→2024-02-05T09:15Z"}),
        // Years after the start: the rule is not walked from 2024 but must land on the same days.
        ReadCase("WeeklyRuleYearsLater", "Asia/Riyadh", utc(2026, 3, 1), utc(2026, 3, 10),
                 weeklyWithExceptions,
                 {"Standup 2026-03-02T09:00Z→2026-03-02T09:15Z",
                  "Standup 2026-03-09T09:00Z→2026-03-09T09:15Z"}),
        // 2024-01-01 plus 57 fortnights; the week between belongs to no occurrence.
        ReadCase("FortnightlyRuleYearsLaterKeepsItsWeeks", "UTC", utc(2026, 2, 28),
                 utc(2026, 3, 14),
                 event("f", "Review",
                       "DTSTART:20240101T120000Z\r\nDURATION:PT1H\r\n"
                       "RRULE:FREQ=WEEKLY;INTERVAL=2\r\n"),
                 {"Review 2026-03-09T12:00Z→2026-03-09T13:00Z"}),
        ReadCase("MeetingAcrossDaylightSavingInItsOwnZone", "Asia/Riyadh", utc(2024, 3, 7),
                 utc(2024, 3, 17),
                 easternZone + event("dst", "Sync",
                                     "DTSTART;TZID=Office Eastern:20240301T090000\r\n"
                                     "DTEND;TZID=Office Eastern:20240301T100000\r\n"
                                     "RRULE:FREQ=WEEKLY\r\n"),
                 {"Sync 2024-03-08T14:00Z→2024-03-08T15:00Z",
                  "Sync 2024-03-15T13:00Z→2024-03-15T14:00Z"}),
        ReadCase("AllDayEventOnTheLocalCalendar", "Asia/Riyadh", utc(2024, 3, 9), utc(2024, 3, 13),
                 event("d", "Holiday",
                       "DTSTART;VALUE=DATE:20240310\r\nDTEND;VALUE=DATE:20240312\r\n"),
                 {"Holiday 2024-03-09T21:00Z→2024-03-11T21:00Z (all day)"}),
        ReadCase("AllDayWithoutEndIsOneDay", "UTC", utc(2025, 3, 1), utc(2025, 3, 31),
                 event("d", "Birthday", "DTSTART;VALUE=DATE:20240310\r\nRRULE:FREQ=YEARLY\r\n"),
                 {"Birthday 2025-03-10T00:00Z→2025-03-11T00:00Z (all day)"}),
        ReadCase("FloatingTimeReadsOnTheLocalClock", "America/New_York", utc(2024, 3, 9),
                 utc(2024, 3, 11),
                 event("f", "Lunch", "DTSTART:20240310T090000\r\nDTEND:20240310T100000\r\n"),
                 {"Lunch 2024-03-10T13:00Z→2024-03-10T14:00Z"}),
        ReadCase("UtcAndSystemZoneTimes", "Asia/Riyadh", utc(2024, 3, 9), utc(2024, 3, 11),
                 event("u", "Call", "DTSTART:20240310T090000Z\r\nDURATION:PT45M\r\n") +
                     event("t", "Tokyo", "DTSTART;TZID=Asia/Tokyo:20240310T090000\r\n"),
                 {"Tokyo 2024-03-10T00:00Z→2024-03-10T00:00Z",
                  "Call 2024-03-10T09:00Z→2024-03-10T09:45Z"}),
        ReadCase("CancelledEventLeftOut", "UTC", utc(2024, 3, 9), utc(2024, 3, 11),
                 event("c", "Gone", "STATUS:CANCELLED\r\nDTSTART:20240310T090000Z\r\n") +
                     event("k", "Kept", "STATUS:CONFIRMED\r\nDTSTART:20240310T100000Z\r\n"),
                 {"Kept 2024-03-10T10:00Z→2024-03-10T10:00Z"}),
        ReadCase(
            "RdatesCountAndEventsReachingIntoTheSpan", "UTC", utc(2024, 3, 10), utc(2024, 3, 12),
            event("r", "Extra",
                  "DTSTART:20240301T090000Z\r\nDTEND:20240301T093000Z\r\n"
                  "RDATE:20240310T160000Z,20240320T160000Z\r\n") +
                event("n", "Night shift",
                      "DTSTART:20240309T220000Z\r\nDTEND:20240310T060000Z\r\n") +
                event("x", "Daily", "DTSTART:20240308T070000Z\r\nRRULE:FREQ=DAILY;COUNT=3\r\n"),
            {"Night shift 2024-03-09T22:00Z→2024-03-10T06:00Z",
             "Daily 2024-03-10T07:00Z→2024-03-10T07:00Z",
             "Extra 2024-03-10T16:00Z→2024-03-10T16:30Z"})),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ICalendarReader, ReadsTheCalendarsNameColourLocationAndJoinLink)
{
    const auto result = readICalendar(
        document(
            "X-WR-CALNAME:Work\r\nX-APPLE-CALENDAR-COLOR:#1BADF8FF\r\n" +
            event("z", "Planning",
                  "LOCATION:Room 4\r\nDESCRIPTION:Agenda at https://example.com/agenda\\nJoin: "
                  "https://us02web.zoom.us/j/8123456789?pwd=abc\r\n"
                  "DTSTART:20240310T090000Z\r\n")),
        utc(2024, 3, 10), utc(2024, 3, 11), "UTC");
    ASSERT_TRUE(result.reading);
    EXPECT_EQ(result.reading->name, "Work");
    EXPECT_EQ(result.reading->colour, 0x1BADF8u);
    ASSERT_EQ(result.reading->events.size(), 1u);
    const Meeting& event = result.reading->events.front();
    EXPECT_EQ(event.location, "Room 4");
    EXPECT_EQ(event.joinLink, "https://us02web.zoom.us/j/8123456789?pwd=abc");
    EXPECT_EQ(event.id, "z@" + std::to_string(1710061200));
}

TEST(ICalendarReader, RefusesWhatIsNoCalendarAndReadsPastBrokenLines)
{
    using namespace std::string_view_literals;
    for (std::string_view bad :
         {""sv, "this is not a calendar"sv, "BEGIN:VEVENT\r\nEND:VEVENT\r\n"sv,
          "BEGIN:VCALENDAR\r\n\0\x01garbage\r\nEND:VCALENDAR\r\n"sv}) {
        const auto result = readICalendar(bad, utc(2024, 1, 1), utc(2025, 1, 1), "UTC");
        EXPECT_FALSE(result.reading) << bad;
        EXPECT_FALSE(result.error.empty()) << bad;
    }
    const auto damaged =
        readICalendar(document(event("a", "No start", "") +
                               event("b", "Bad rule",
                                     "DTSTART:20240310T090000Z\r\nRRULE:FREQ=SOMETIMES;BYDAY=XX\r\n"
                                     "DTEND:not-a-time\r\n") +
                               "this line is no property\r\n" +
                               event("c", "Good", "DTSTART:20240310T100000Z\r\n")),
                      utc(2024, 3, 10), utc(2024, 3, 11), "UTC");
    ASSERT_TRUE(damaged.reading);
    EXPECT_THAT(titles(damaged.reading->events), Contains("Good"));
    EXPECT_THAT(titles(damaged.reading->events), Not(Contains("No start")));
}

TEST(ICalendarReader, EndlessRulesStopAtTheEndOfTheSpan)
{
    const auto result = readICalendar(
        document(event("s", "Tick", "DTSTART:20240310T000000Z\r\nRRULE:FREQ=MINUTELY\r\n")),
        utc(2024, 3, 10), utc(2024, 3, 10, 1), "UTC");
    ASSERT_TRUE(result.reading);
    EXPECT_EQ(result.reading->events.size(), 60u);
}

TEST(ICalendarReader, ParsesHexColours)
{
    EXPECT_EQ(parseHexColour("#FF8000"), 0xFF8000u);
    EXPECT_EQ(parseHexColour("#ff8000cc"), 0xFF8000u);
    for (const char* notAColour : {"FF8000", "#FF80", "#GG8000"})
        EXPECT_EQ(parseHexColour(notAColour), std::nullopt) << notAColour;
}

} // namespace
} // namespace navro
