#include "prayer/SystemZone.h"

#include "prayer/PrayerCalculator.h"
#include "prayer/PrayerCity.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>

namespace navro {
namespace {

using namespace std::chrono;

sys_seconds utc(int y, unsigned m, unsigned d, int hour = 0, int minute = 0)
{
    return sys_days(year(y) / month(m) / day(d)) + hours(hour) + minutes(minute);
}

UDate udate(sys_seconds instant)
{
    return double(instant.time_since_epoch().count()) * 1000.0;
}

// Standard and summer parts of the offset, in minutes.
std::pair<int, int> offsetParts(const icu::TimeZone& zone, sys_seconds instant)
{
    UErrorCode status = U_ZERO_ERROR;
    int32_t raw = 0;
    int32_t dst = 0;
    zone.getOffset(udate(instant), false, raw, dst, status);
    EXPECT_TRUE(U_SUCCESS(status));
    return {raw / 60000, dst / 60000};
}

int offsetMinutes(const icu::TimeZone& zone, sys_seconds instant)
{
    const auto [raw, dst] = offsetParts(zone, instant);
    return raw + dst;
}

std::unique_ptr<icu::TimeZone> icuOwn(const std::string& id)
{
    return std::unique_ptr<icu::TimeZone>(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(id)));
}

std::string systemFile(const std::string& id)
{
    std::ifstream file("/usr/share/zoneinfo/" + id, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class SystemZone : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!systemTimeZone("Europe/London"))
            GTEST_SKIP() << "this machine has no compiled time-zone database";
    }
};

// Where neither copy of the database has changed, the zone read from the system's files says
// what ICU's own copy says, hour by hour: the offsets, the summer-time split and the changes.
// After 2037 the files hold only a rule, which must carry the present rules on.
TEST_F(SystemZone, AgreesWithIcuWhereTheRulesHaveNotChanged)
{
    std::set<std::string> zones{"America/New_York", "Australia/Sydney"};
    for (const auto& city : PrayerCity::all())
        zones.insert(city.timeZoneID);
    for (const auto& id : zones) {
        const auto ours = systemTimeZone(id);
        const auto theirs = icuOwn(id);
        ASSERT_TRUE(ours) << id;
        // Egypt's rules changed in 2023, Jordan's in 2022: compare up to then.
        const int lastYear = (id == "Africa/Cairo" || id == "Asia/Amman") ? 2021 : 2042;
        for (auto at = utc(2000, 1, 1); at < utc(lastYear, 12, 31); at += hours(6))
            ASSERT_EQ(offsetParts(*ours, at), offsetParts(*theirs, at))
                << id << " at " << at.time_since_epoch().count();
    }
}

TEST_F(SystemZone, KnowsEgyptsReturnToSummerTime)
{
    const auto cairo = systemTimeZone("Africa/Cairo");
    ASSERT_TRUE(cairo);
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 1, 15)), 120);
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 7, 1)), 180);
    // Clocks go forward at the start of the last Friday of April: 24 April 2026.
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 4, 23, 21, 59)), 120);
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 4, 23, 22, 0)), 180);
}

TEST(SystemZoneInput, UnreadableInputGivesNoZone)
{
    EXPECT_FALSE(systemTimeZone("Mars/Olympus"));
    EXPECT_FALSE(systemTimeZone("../etc/passwd"));
    EXPECT_FALSE(systemTimeZone("/etc/localtime"));
    EXPECT_FALSE(systemTimeZone(""));
    EXPECT_FALSE(timeZoneFromTzif("X", ""));
    EXPECT_FALSE(timeZoneFromTzif("X", "TZif2 but nothing else"));
    const auto real = systemFile("Europe/London");
    if (real.size() > 100) {
        // Cut anywhere, the file must be refused or read, never overrun.
        for (std::size_t size = 0; size < real.size(); size += 37)
            timeZoneFromTzif("Europe/London", std::string_view(real).substr(0, size));
        auto whole = timeZoneFromTzif("Europe/London", real);
        ASSERT_TRUE(whole);
        EXPECT_EQ(offsetMinutes(*whole, utc(2026, 7, 1)), 60);
    }
}

} // namespace
} // namespace navro
