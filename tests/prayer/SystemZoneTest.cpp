#include "prayer/SystemZone.h"

#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"
#include "prayer/PrayerCalculator.h"
#include "prayer/PrayerCity.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace navro {
namespace {

using namespace std::chrono;

sys_seconds utc(int y, unsigned m, unsigned d, int hour = 0, int minute = 0)
{
    return sys_days(year(y) / month(m) / day(d)) + hours(hour) + minutes(minute);
}

// Standard and summer parts of the offset, in minutes.
std::pair<int, int> offsetParts(const icu::TimeZone& zone, sys_seconds instant)
{
    UErrorCode status = U_ZERO_ERROR;
    int32_t raw = 0;
    int32_t dst = 0;
    zone.getOffset(UDate(instant.time_since_epoch().count()) * 1000.0, false, raw, dst, status);
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
TEST_F(SystemZone, AgreesWithIcuWhereTheRulesHaveNotChangedAndKnowsEgyptsNewOnes)
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

    // Egypt's return to summer time: clocks go forward at the start of the last Friday of April,
    // 24 April 2026.
    const auto cairo = systemTimeZone("Africa/Cairo");
    ASSERT_TRUE(cairo);
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 1, 15)), 120);
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 7, 1)), 180);
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 4, 23, 21, 59)), 120);
    EXPECT_EQ(offsetMinutes(*cairo, utc(2026, 4, 23, 22, 0)), 180);
}

TEST(SystemZoneInput, UnreadableInputGivesNoZone)
{
    for (const char* id : {"Mars/Olympus", "../etc/passwd", "/etc/localtime", ""})
        EXPECT_FALSE(systemTimeZone(id)) << id;
    EXPECT_FALSE(timeZoneFromTzif("X", ""));
    EXPECT_FALSE(timeZoneFromTzif("X", "TZif2 but nothing else"));
    const auto real = readBytes("/usr/share/zoneinfo/Europe/London");
    if (real.size() > 100) {
        // Cut anywhere, the file must be refused or read, never overrun.
        for (std::size_t size = 0; size < real.size(); size += 37)
            timeZoneFromTzif("Europe/London", std::string_view(real).substr(0, size));
        auto whole = timeZoneFromTzif("Europe/London", real);
        ASSERT_TRUE(whole);
        EXPECT_EQ(offsetMinutes(*whole, utc(2026, 7, 1)), 60);
    }
}

// A compiled zone file (version 2: an empty 32-bit block, then the 64-bit data and the footer).
struct LocalTypeParts {
    std::int32_t offset;
    bool dst;
    std::uint8_t abbreviation; // index into the abbreviation bytes
};
struct ZoneFileParts {
    std::vector<std::int64_t> times;
    std::vector<std::uint8_t> typeIndices;
    std::vector<LocalTypeParts> types{{7200, false, 0}};
    std::string abbreviations{"EET\0EEST\0", 10};
    std::string footer = "EET-2";
    std::uint32_t isStdCount = 0;
};

void putBigEndian(std::string& out, std::uint64_t value, int bytes)
{
    for (int i = bytes - 1; i >= 0; --i)
        out += char((value >> (8 * i)) & 0xff);
}

std::string tzifBytes(const ZoneFileParts& parts)
{
    auto header = [&](std::uint32_t time, std::uint32_t types, std::uint32_t chars,
                      std::uint32_t isStd) {
        std::string h = "TZif2" + std::string(15, '\0');
        for (std::uint32_t count : {0u, isStd, 0u, time, types, chars})
            putBigEndian(h, count, 4);
        return h;
    };
    std::string out = header(0, 0, 0, 0);
    out += header(std::uint32_t(parts.times.size()), std::uint32_t(parts.types.size()),
                  std::uint32_t(parts.abbreviations.size()), parts.isStdCount);
    for (std::int64_t time : parts.times)
        putBigEndian(out, std::uint64_t(time), 8);
    for (std::uint8_t index : parts.typeIndices)
        out += char(index);
    for (const auto& type : parts.types) {
        putBigEndian(out, std::uint32_t(type.offset), 4);
        out += char(type.dst);
        out += char(type.abbreviation);
    }
    out += parts.abbreviations;
    out += std::string(parts.isStdCount, '\0');
    return out + "\n" + parts.footer + "\n";
}

// Summer time from 2000 to 2001, standard time after.
ZoneFileParts oneSummer()
{
    ZoneFileParts parts;
    parts.times = {int64_t(utc(2000, 4, 1).time_since_epoch().count()),
                   int64_t(utc(2000, 10, 1).time_since_epoch().count())};
    parts.typeIndices = {1, 0};
    parts.types = {{7200, false, 0}, {10800, true, 4}};
    return parts;
}

TEST(SystemZoneInput, ReadsAWellFormedFileAndRefusesEveryBrokenPart)
{
    const auto good = timeZoneFromTzif("Test/Zone", tzifBytes(oneSummer()));
    ASSERT_TRUE(good);
    EXPECT_EQ(offsetMinutes(*good, utc(2000, 6, 1)), 180);
    EXPECT_EQ(offsetMinutes(*good, utc(2005, 6, 1)), 120);

    struct Case {
        const char* what;
        std::function<void(ZoneFileParts&)> damage;
    };
    const std::vector<Case> cases{
        {"changes out of order", [](ZoneFileParts& s) { std::swap(s.times[0], s.times[1]); }},
        {"the same change twice", [](ZoneFileParts& s) { s.times[1] = s.times[0]; }},
        {"a change naming a missing type", [](ZoneFileParts& s) { s.typeIndices[0] = 2; }},
        {"an offset of three days", [](ZoneFileParts& s) { s.types[1].offset = 3 * 86400; }},
        {"an offset of minus 2^31", [](ZoneFileParts& s) { s.types[0].offset = INT32_MIN; }},
        {"an abbreviation past the bytes", [](ZoneFileParts& s) { s.types[1].abbreviation = 10; }},
        {"an abbreviation without its end",
         [](ZoneFileParts& s) { s.abbreviations = std::string("EET\0EEST", 8); }},
        {"indicators for some types only",
         [](ZoneFileParts& s) {
             s.types.push_back({7200, false, 0});
             s.isStdCount = 1;
         }},
        {"no types at all",
         [](ZoneFileParts& s) {
             s.types.clear();
             s.times.clear();
             s.typeIndices.clear();
         }},
        {"more types than a byte can name",
         [](ZoneFileParts& s) {
             s.types.resize(257, LocalTypeParts{7200, false, 0});
         }},
        {"more changes than any real zone",
         [](ZoneFileParts& s) {
             s.times.clear();
             s.typeIndices.clear();
             for (int i = 0; i < 2001; ++i) {
                 s.times.push_back(i * 3600);
                 s.typeIndices.push_back(std::uint8_t(i % 2));
             }
         }},
    };
    for (const auto& c : cases) {
        ZoneFileParts parts = oneSummer();
        c.damage(parts);
        EXPECT_FALSE(timeZoneFromTzif("Test/Zone", tzifBytes(parts))) << c.what;
    }

    // A file beyond the size of any zone is refused before it is parsed.
    std::string padded = tzifBytes(oneSummer());
    padded += std::string(70 * 1024, ' ');
    EXPECT_FALSE(timeZoneFromTzif("Test/Zone", padded));
}

TEST(SystemZoneInput, AChangeBeforeAllHistoryOnlySaysWhatCameFirst)
{
    // Older compilers of the database opened the 64-bit data with a change at -2^59.
    ZoneFileParts parts = oneSummer();
    parts.times.insert(parts.times.begin(), -(std::int64_t(1) << 59));
    parts.typeIndices.insert(parts.typeIndices.begin(), 2);
    parts.types.push_back({3600, false, 0});
    const auto zone = timeZoneFromTzif("Test/Zone", tzifBytes(parts));
    ASSERT_TRUE(zone);
    EXPECT_EQ(offsetMinutes(*zone, utc(1990, 1, 1)), 60) << "the type of the dropped change";
    EXPECT_EQ(offsetMinutes(*zone, utc(2000, 6, 1)), 180);
}

TEST(SystemZoneInput, FooterRulesCarryOnAfterTheLastChangeOrAreLeftOut)
{
    struct Case {
        std::string footer;
        int julyOffset2030; // minutes
    };
    const std::vector<Case> cases{
        {"EET-2EEST,M3.5.0/3,M10.5.0/4", 180},
        {"EET-2EEST,M3.5.0/-2,M10.5.0/26", 180},
        {"EET-2", 120},
        {"<+0230>-2:30", 120},       // no summer time: the last listed offset stays
        {"EET-2EEST,J60,J300", 120}, // by day of the year: left out
        {"EET-2EEST,M3.5.0/999,M10.5.0", 120},
        {"EET-99999999999EEST,M3.5.0,M10.5.0", 120},
        {"EET-2EEST,M13.5.0,M10.5.0", 120},
        {std::string(300, 'A') + "-2", 120},
    };
    for (const auto& c : cases) {
        ZoneFileParts parts = oneSummer();
        parts.footer = c.footer;
        const auto zone = timeZoneFromTzif("Test/Zone", tzifBytes(parts));
        ASSERT_TRUE(zone) << c.footer;
        EXPECT_EQ(offsetMinutes(*zone, utc(2030, 7, 1)), c.julyOffset2030) << c.footer;
        EXPECT_EQ(offsetMinutes(*zone, utc(2030, 1, 1)), 120) << c.footer;
    }
}

TEST(SystemZoneInput, AFooterRuleNeverStartsBeforeTheLastListedChange)
{
    // Summer time from a week before each year begins to July. Its change for 2001 falls on the
    // last day of 2000, hours before the last listed change.
    ZoneFileParts parts = oneSummer();
    parts.times[1] = utc(2000, 12, 31, 12).time_since_epoch().count();
    parts.footer = "EET-2EEST,M1.1.0/-167,M7.1.0";
    const auto zone = timeZoneFromTzif("Test/Zone", tzifBytes(parts));
    ASSERT_TRUE(zone);
    EXPECT_EQ(offsetMinutes(*zone, utc(2000, 12, 1)), 180) << "the listed summer";
    EXPECT_EQ(offsetMinutes(*zone, utc(2001, 3, 1)), 120) << "the rule waits a year";
    EXPECT_EQ(offsetMinutes(*zone, utc(2003, 3, 1)), 180);
    EXPECT_EQ(offsetMinutes(*zone, utc(2003, 8, 1)), 120);
}

TEST(SystemZoneInput, AChangeBeyondTheCountedYearsIsLeftOut)
{
    // 2^40 seconds is the year 36812, past the last year the calendar code counts. Taken as a
    // year long past, it started this rule (changes a week before each year begins) so early that
    // building the zone never ended.
    ZoneFileParts parts = oneSummer();
    parts.times = {0, std::int64_t(1) << 40};
    parts.typeIndices = {0, 1};
    parts.footer = "EET-2EEST,M1.1.0/-167,M1.1.1/-160";
    const auto zone = timeZoneFromTzif("Test/Zone", tzifBytes(parts));
    ASSERT_TRUE(zone);
    EXPECT_EQ(offsetMinutes(*zone, utc(2003, 3, 1)), 120);
}

TEST(SystemZoneInput, PosixRulesAreToldFromOtherText)
{
    for (const char* rule :
         {"UTC0", "EST5EDT", "EST5EDT,M3.2.0,M11.1.0", "<+03>-3", "IST-2IDT,M3.4.4/26,M10.5.0",
          "CET-1CEST,J60/2,300/3", "NZST-12NZDT-13,M9.5.0,M4.1.0/3"})
        EXPECT_TRUE(isPosixZoneRule(rule)) << rule;
    for (const char* text :
         {"", "Asia", "America/", "Mars/Olympus", "zero", "UT", "EST", "EST5EDT,M3.2.0",
          "EST5EDT,M3.2.0,M11.1.0,", "EST1000", "<ab>5", "EST5EDT,J0,J100"})
        EXPECT_FALSE(isPosixZoneRule(text)) << text;
}

// A folder of its own standing in for the zone database and /etc/localtime.
class ZoneSetting : public ::testing::Test {
protected:
    void SetUp() override
    {
        writeBytes(folder_ / "Asia/Riyadh", tzifBytes(oneSummer()));
        writeBytes(localtime(), tzifBytes(oneSummer()));
        writeBytes(folder_ / "zone.tab", "SA\t+2438+04643\tAsia/Riyadh\n");
        ASSERT_EQ(::mkfifo((folder_ / "fifo").c_str(), 0600), 0);
        std::filesystem::create_symlink("/dev/zero", folder_ / "zero");
    }

    std::string dir() const { return folder_.path().string(); }
    std::filesystem::path localtime() const { return folder_ / "localtime"; }

    TemporaryFolder folder_;
};

TEST_F(ZoneSetting, UnusableValuesFallBackToTheSystemZoneThenToUtc)
{
    using Fallback = ZoneSettingCheck::Fallback;
    struct Case {
        const char* tz; // null: unset
        Fallback expected;
        const char* inMessage;
    };
    const std::vector<Case> cases{
        {nullptr, Fallback::none, ""},
        {"", Fallback::none, ""},
        {"Asia/Riyadh", Fallback::none, ""},
        {":Asia/Riyadh", Fallback::none, ""},
        {"EST5EDT,M3.2.0,M11.1.0", Fallback::none, ""},
        {"Asia", Fallback::systemZone, "a folder"},
        {"Asia/", Fallback::systemZone, "a folder"},
        {"fifo", Fallback::systemZone, "a FIFO"},
        {"zero", Fallback::systemZone, "a device"},
        {"zone.tab", Fallback::systemZone, "not a compiled time-zone file"},
        {"Mars/Olympus", Fallback::systemZone, "names no known time zone"},
        {"/dev/zero", Fallback::systemZone, "a device"},
    };
    for (const auto& c : cases) {
        const ZoneSettingCheck check = checkZoneSetting(c.tz, dir().c_str(), localtime());
        const std::string tz = c.tz ? c.tz : "(unset)";
        EXPECT_EQ(check.fallback, c.expected) << tz;
        if (c.expected == Fallback::none) {
            EXPECT_TRUE(check.message.empty()) << tz;
            continue;
        }
        EXPECT_NE(check.message.find("TZ \"" + tz + "\""), std::string::npos) << check.message;
        EXPECT_NE(check.message.find(c.inMessage), std::string::npos) << check.message;
        EXPECT_NE(check.message.find("using the system zone"), std::string::npos) << check.message;
    }

    // With the system zone unusable as well, only UTC is left; unset TZ means the system zone.
    const std::filesystem::path fifo = folder_ / "fifo";
    const ZoneSettingCheck both = checkZoneSetting("Asia", dir().c_str(), fifo);
    EXPECT_EQ(both.fallback, Fallback::utc);
    EXPECT_NE(both.message.find("a FIFO"), std::string::npos) << both.message;
    EXPECT_NE(both.message.find("using UTC"), std::string::npos) << both.message;
    const ZoneSettingCheck unset = checkZoneSetting(nullptr, dir().c_str(), fifo);
    EXPECT_EQ(unset.fallback, Fallback::utc);
    EXPECT_EQ(checkZoneSetting(nullptr, dir().c_str(), folder_ / "none").fallback, Fallback::none)
        << "without a system zone file the C library uses UTC by itself";

    // A value from outside enters the log line cut short.
    const std::string longName(5000, 'x');
    const ZoneSettingCheck cut = checkZoneSetting(longName.c_str(), dir().c_str(), localtime());
    EXPECT_LT(cut.message.size(), 600u);
}

TEST_F(ZoneSetting, TheReaderOpensOnlyRegularFilesUnderTzdir)
{
    const ScopedEnvironment zones("TZDIR", dir().c_str());
    EXPECT_TRUE(systemTimeZone("Asia/Riyadh"));
    for (const char* id : {"Asia", "fifo", "zero", "zone.tab", "Asia/Nowhere"})
        EXPECT_FALSE(systemTimeZone(id)) << id;
}

} // namespace
} // namespace navro
