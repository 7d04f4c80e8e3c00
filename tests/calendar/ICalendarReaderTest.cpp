#include "calendar/ICalendarReader.h"

#include "CalendarTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace calendar_test;
using ::testing::ElementsAreArray;

const char* const easternZone = "BEGIN:VTIMEZONE\r\n"
                                "TZID:Office Eastern\r\n"
                                "BEGIN:STANDARD\r\n"
                                "DTSTART:19701101T020000\r\n"
                                "RRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\r\n"
                                "TZOFFSETFROM:-0400\r\n"
                                "TZOFFSETTO:-0500\r\n"
                                "END:STANDARD\r\n"
                                "BEGIN:DAYLIGHT\r\n"
                                "DTSTART:19700308T020000\r\n"
                                "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\r\n"
                                "TZOFFSETFROM:-0500\r\n"
                                "TZOFFSETTO:-0400\r\n"
                                "END:DAYLIGHT\r\n"
                                "END:VTIMEZONE\r\n";

const char* const weeklyWithExceptions =
    "BEGIN:VEVENT\r\nUID:standup\r\nSUMMARY:Standup\r\n"
    "DTSTART;TZID=Europe/Berlin:20240101T100000\r\nDTEND;TZID=Europe/Berlin:20240101T101500\r\n"
    "RRULE:FREQ=WEEKLY;BYDAY=MO\r\nEXDATE;TZID=Europe/Berlin:20240108T100000\r\nEND:VEVENT\r\n"
    "BEGIN:VEVENT\r\nUID:standup\r\nSUMMARY:Moved standup\r\n"
    "RECURRENCE-ID;TZID=Europe/Berlin:20240115T100000\r\n"
    "DTSTART;TZID=Europe/Berlin:20240115T140000\r\nDTEND;TZID=Europe/Berlin:20240115T143000\r\n"
    "END:VEVENT\r\n"
    "BEGIN:VEVENT\r\nUID:standup\r\nSUMMARY:Standup\r\nSTATUS:CANCELLED\r\n"
    "RECURRENCE-ID;TZID=Europe/Berlin:20240129T100000\r\n"
    "DTSTART;TZID=Europe/Berlin:20240129T100000\r\nEND:VEVENT\r\n";

struct ReadCase {
    const char* name;
    std::string body;
    WallTime from, to;
    std::string localZone;
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
        ReadCase{"WeeklyWithExceptionOverrideAndCancelledInstance",
                 weeklyWithExceptions,
                 utc(2024, 1, 7),
                 utc(2024, 2, 6),
                 "Asia/Riyadh",
                 {"Moved standup 2024-01-15T13:00Z→2024-01-15T13:30Z",
                  "Standup 2024-01-22T09:00Z→2024-01-22T09:15Z",
                  "Standup 2024-02-05T09:00Z→2024-02-05T09:15Z"}},
        // Years after the start: the rule is not walked from 2024 but must land on the same days.
        ReadCase{"WeeklyRuleYearsLater",
                 weeklyWithExceptions,
                 utc(2026, 3, 1),
                 utc(2026, 3, 10),
                 "Asia/Riyadh",
                 {"Standup 2026-03-02T09:00Z→2026-03-02T09:15Z",
                  "Standup 2026-03-09T09:00Z→2026-03-09T09:15Z"}},
        ReadCase{"FortnightlyRuleYearsLaterKeepsItsWeeks",
                 "BEGIN:VEVENT\r\nUID:f\r\nSUMMARY:Review\r\nDTSTART:20240101T120000Z\r\n"
                 "DURATION:PT1H\r\nRRULE:FREQ=WEEKLY;INTERVAL=2\r\nEND:VEVENT\r\n",
                 utc(2026, 2, 28),
                 utc(2026, 3, 14),
                 "UTC",
                 // 2024-01-01 plus 57 fortnights; the week between belongs to no occurrence.
                 {"Review 2026-03-09T12:00Z→2026-03-09T13:00Z"}},
        ReadCase{"MeetingAcrossDaylightSavingInItsOwnZone",
                 std::string(easternZone) + "BEGIN:VEVENT\r\nUID:dst\r\nSUMMARY:Sync\r\n"
                                            "DTSTART;TZID=Office Eastern:20240301T090000\r\n"
                                            "DTEND;TZID=Office Eastern:20240301T100000\r\n"
                                            "RRULE:FREQ=WEEKLY\r\nEND:VEVENT\r\n",
                 utc(2024, 3, 7),
                 utc(2024, 3, 17),
                 "Asia/Riyadh",
                 {"Sync 2024-03-08T14:00Z→2024-03-08T15:00Z",
                  "Sync 2024-03-15T13:00Z→2024-03-15T14:00Z"}},
        ReadCase{"AllDayEventOnTheLocalCalendar",
                 "BEGIN:VEVENT\r\nUID:d\r\nSUMMARY:Holiday\r\nDTSTART;VALUE=DATE:20240310\r\n"
                 "DTEND;VALUE=DATE:20240312\r\nEND:VEVENT\r\n",
                 utc(2024, 3, 9),
                 utc(2024, 3, 13),
                 "Asia/Riyadh",
                 {"Holiday 2024-03-09T21:00Z→2024-03-11T21:00Z (all day)"}},
        ReadCase{"AllDayWithoutEndIsOneDay",
                 "BEGIN:VEVENT\r\nUID:d\r\nSUMMARY:Birthday\r\nDTSTART;VALUE=DATE:20240310\r\n"
                 "RRULE:FREQ=YEARLY\r\nEND:VEVENT\r\n",
                 utc(2025, 3, 1),
                 utc(2025, 3, 31),
                 "UTC",
                 {"Birthday 2025-03-10T00:00Z→2025-03-11T00:00Z (all day)"}},
        ReadCase{"FloatingTimeReadsOnTheLocalClock",
                 "BEGIN:VEVENT\r\nUID:f\r\nSUMMARY:Lunch\r\nDTSTART:20240310T090000\r\n"
                 "DTEND:20240310T100000\r\nEND:VEVENT\r\n",
                 utc(2024, 3, 9),
                 utc(2024, 3, 11),
                 "America/New_York",
                 {"Lunch 2024-03-10T13:00Z→2024-03-10T14:00Z"}},
        ReadCase{"UtcAndSystemZoneTimes",
                 "BEGIN:VEVENT\r\nUID:u\r\nSUMMARY:Call\r\nDTSTART:20240310T090000Z\r\n"
                 "DURATION:PT45M\r\nEND:VEVENT\r\n"
                 "BEGIN:VEVENT\r\nUID:t\r\nSUMMARY:Tokyo\r\n"
                 "DTSTART;TZID=Asia/Tokyo:20240310T090000\r\nEND:VEVENT\r\n",
                 utc(2024, 3, 9),
                 utc(2024, 3, 11),
                 "Asia/Riyadh",
                 {"Tokyo 2024-03-10T00:00Z→2024-03-10T00:00Z",
                  "Call 2024-03-10T09:00Z→2024-03-10T09:45Z"}},
        ReadCase{"CancelledEventLeftOut",
                 "BEGIN:VEVENT\r\nUID:c\r\nSUMMARY:Gone\r\nSTATUS:CANCELLED\r\n"
                 "DTSTART:20240310T090000Z\r\nEND:VEVENT\r\n"
                 "BEGIN:VEVENT\r\nUID:k\r\nSUMMARY:Kept\r\nSTATUS:CONFIRMED\r\n"
                 "DTSTART:20240310T100000Z\r\nEND:VEVENT\r\n",
                 utc(2024, 3, 9),
                 utc(2024, 3, 11),
                 "UTC",
                 {"Kept 2024-03-10T10:00Z→2024-03-10T10:00Z"}},
        ReadCase{"RdatesCountAndEventsReachingIntoTheSpan",
                 "BEGIN:VEVENT\r\nUID:r\r\nSUMMARY:Extra\r\nDTSTART:20240301T090000Z\r\n"
                 "DTEND:20240301T093000Z\r\nRDATE:20240310T160000Z,20240320T160000Z\r\n"
                 "END:VEVENT\r\n"
                 "BEGIN:VEVENT\r\nUID:n\r\nSUMMARY:Night shift\r\nDTSTART:20240309T220000Z\r\n"
                 "DTEND:20240310T060000Z\r\nEND:VEVENT\r\n"
                 "BEGIN:VEVENT\r\nUID:x\r\nSUMMARY:Daily\r\nDTSTART:20240308T070000Z\r\n"
                 "RRULE:FREQ=DAILY;COUNT=3\r\nEND:VEVENT\r\n",
                 utc(2024, 3, 10),
                 utc(2024, 3, 12),
                 "UTC",
                 {"Night shift 2024-03-09T22:00Z→2024-03-10T06:00Z",
                  "Daily 2024-03-10T07:00Z→2024-03-10T07:00Z",
                  "Extra 2024-03-10T16:00Z→2024-03-10T16:30Z"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ICalendarReader, ReadsTheCalendarsNameColourLocationAndJoinLink)
{
    const auto result =
        readICalendar(document("X-WR-CALNAME:Work\r\nX-APPLE-CALENDAR-COLOR:#1BADF8FF\r\n"
                               "BEGIN:VEVENT\r\nUID:z\r\nSUMMARY:Planning\r\nLOCATION:Room 4\r\n"
                               "DESCRIPTION:Agenda at https://example.com/agenda\\nJoin: "
                               "https://us02web.zoom.us/j/8123456789?pwd=abc\r\n"
                               "DTSTART:20240310T090000Z\r\nEND:VEVENT\r\n"),
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
    const auto damaged = readICalendar(
        document("BEGIN:VEVENT\r\nUID:a\r\nSUMMARY:No start\r\nEND:VEVENT\r\n"
                 "BEGIN:VEVENT\r\nUID:b\r\nSUMMARY:Bad rule\r\nDTSTART:20240310T090000Z\r\n"
                 "RRULE:FREQ=SOMETIMES;BYDAY=XX\r\nDTEND:not-a-time\r\nEND:VEVENT\r\n"
                 "this line is no property\r\n"
                 "BEGIN:VEVENT\r\nUID:c\r\nSUMMARY:Good\r\nDTSTART:20240310T100000Z\r\n"
                 "END:VEVENT\r\n"),
        utc(2024, 3, 10), utc(2024, 3, 11), "UTC");
    ASSERT_TRUE(damaged.reading);
    std::vector<std::string> titles;
    for (const auto& event : damaged.reading->events)
        titles.push_back(event.title);
    EXPECT_THAT(titles, ::testing::Contains("Good"));
    EXPECT_THAT(titles, ::testing::Not(::testing::Contains("No start")));
}

TEST(ICalendarReader, EndlessRulesStopAtTheEndOfTheSpan)
{
    const auto result = readICalendar(
        document("BEGIN:VEVENT\r\nUID:s\r\nSUMMARY:Tick\r\nDTSTART:20240310T000000Z\r\n"
                 "RRULE:FREQ=MINUTELY\r\nEND:VEVENT\r\n"),
        utc(2024, 3, 10), utc(2024, 3, 10, 1), "UTC");
    ASSERT_TRUE(result.reading);
    EXPECT_EQ(result.reading->events.size(), 60u);
}

TEST(ICalendarReader, ParsesHexColours)
{
    EXPECT_EQ(parseHexColour("#FF8000"), 0xFF8000u);
    EXPECT_EQ(parseHexColour("#ff8000cc"), 0xFF8000u);
    EXPECT_EQ(parseHexColour("FF8000"), std::nullopt);
    EXPECT_EQ(parseHexColour("#FF80"), std::nullopt);
    EXPECT_EQ(parseHexColour("#GG8000"), std::nullopt);
}

} // namespace
} // namespace navro
