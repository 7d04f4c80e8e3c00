#include "prayer/PrayerCalculator.h"

#include "prayer/PrayerAstronomy.h"
#include "prayer/PrayerCity.h"

#include <cmath>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono;
using Times = std::map<Prayer, sys_seconds>;

sys_seconds utc(int y, unsigned m, unsigned d, int hour = 0, int minute = 0)
{
    return sys_days(year(y) / month(m) / day(d)) + hours(hour) + minutes(minute);
}

PrayerCalculator calculatorFor(const std::string& cityID, CalculationMethod method,
                               AsrMethod asr = AsrMethod::standard)
{
    const auto city = *PrayerCity::with(cityID);
    return PrayerCalculator(city.latitude, city.longitude, city.timeZoneID, method, asr,
                            std::string("Asia/Riyadh"));
}

// Minutes between two instants, as a signed number.
long long minutesBetween(sys_seconds from, sys_seconds to)
{
    return duration_cast<minutes>(to - from).count();
}

// Minutes past UTC midnight of the instant's own UTC day.
long long utcMinuteOfDay(sys_seconds instant)
{
    return duration_cast<minutes>(instant - floor<days>(instant)).count();
}

TEST(PrayerAstronomy, JulianDaysMatchPublishedValuesAndMinutesRoundHalfAwayFromZero)
{
    EXPECT_DOUBLE_EQ(astronomy::julianDay(2000, 1, 1), 2451544.5);
    EXPECT_DOUBLE_EQ(astronomy::julianDay(1987, 1, 27), 2446822.5);
    // January and February count as months 13 and 14 of the previous year.
    EXPECT_DOUBLE_EQ(astronomy::julianDay(2024, 3, 1) - astronomy::julianDay(2024, 2, 28), 2.0);
    // Half minutes round away from zero.
    EXPECT_EQ(astronomy::roundedMinutes(0.125), 8); // 7.5 min
    EXPECT_EQ(astronomy::roundedMinutes(-0.125), -8);
    EXPECT_EQ(astronomy::roundedMinutes(2.375), 143); // 142.5 min
    EXPECT_EQ(astronomy::roundedMinutes(0.1245), 7);  // 7.47 min
    EXPECT_EQ(astronomy::roundedMinutes(0.1255), 8);  // 7.53 min
}

TEST(PrayerCalculator, HanafiAsrIsLaterAndNothingElseMoves)
{
    for (const auto& city : PrayerCity::all()) {
        PrayerCalculator standard(city.latitude, city.longitude, city.timeZoneID,
                                  city.suggestedMethod, AsrMethod::standard, "UTC");
        PrayerCalculator hanafi(city.latitude, city.longitude, city.timeZoneID,
                                city.suggestedMethod, AsrMethod::hanafi, "UTC");
        for (auto day : {utc(2026, 1, 10, 12), utc(2026, 6, 21, 12), utc(2026, 9, 30, 12)}) {
            auto a = standard.times(day);
            auto b = hanafi.times(day);
            ASSERT_TRUE(a.contains(Prayer::asr) && b.contains(Prayer::asr)) << city.id;
            // A shadow twice the object's length comes roughly three quarters of an hour or more
            // after a shadow of its own length.
            EXPECT_GT(minutesBetween(a.at(Prayer::asr), b.at(Prayer::asr)), 30) << city.id;
            a.erase(Prayer::asr);
            b.erase(Prayer::asr);
            EXPECT_EQ(a, b) << city.id;
        }
    }
}

// 1 Ramadan 1446 was 1 March 2025 and 1 Shawwal 30 March 2025 in the Umm al-Qura calendar.
TEST(PrayerCalculator, UmmAlQuraIshaIsTwoHoursAfterMaghribInRamadanOnly)
{
    const auto makkah = calculatorFor("makkah", CalculationMethod::ummAlQura);
    auto ishaGap = [](const PrayerCalculator& calculator, sys_seconds instant) {
        const auto times = calculator.times(instant);
        return minutesBetween(times.at(Prayer::maghrib), times.at(Prayer::isha));
    };
    EXPECT_EQ(ishaGap(makkah, utc(2025, 2, 28, 9)), 90);
    EXPECT_EQ(ishaGap(makkah, utc(2025, 3, 1, 9)), 120);
    EXPECT_EQ(ishaGap(makkah, utc(2025, 3, 15, 9)), 120);
    EXPECT_EQ(ishaGap(makkah, utc(2025, 3, 29, 9)), 120);
    EXPECT_EQ(ishaGap(makkah, utc(2025, 3, 30, 9)), 90);
    EXPECT_EQ(ishaGap(makkah, utc(2025, 7, 1, 9)), 90);

    for (auto method : {CalculationMethod::gulf, CalculationMethod::qatar}) {
        const auto calculator = calculatorFor("makkah", method);
        EXPECT_EQ(ishaGap(calculator, utc(2025, 3, 15, 9)), 90) << rawValue(method);
        EXPECT_EQ(ishaGap(calculator, utc(2025, 7, 1, 9)), 90) << rawValue(method);
    }
}

TEST(PrayerCalculator, JafariMaghribIsSomeMinutesAfterSunset)
{
    for (const char* id : {"baghdad", "manama", "beirut"}) {
        const auto jafari = calculatorFor(id, CalculationMethod::jafari);
        const auto league = calculatorFor(id, CalculationMethod::muslimWorldLeague);
        for (auto day : {utc(2026, 3, 1, 12), utc(2026, 7, 1, 12), utc(2026, 11, 1, 12)}) {
            const auto sunset = league.times(day).at(Prayer::maghrib);
            const auto times = jafari.times(day);
            const auto delay = minutesBetween(sunset, times.at(Prayer::maghrib));
            // The sun sinks a little more than 3° below the sunset altitude: a quarter of an
            // hour or so at these latitudes.
            EXPECT_GE(delay, 10) << id;
            EXPECT_LE(delay, 25) << id;
            EXPECT_GT(minutesBetween(times.at(Prayer::maghrib), times.at(Prayer::isha)), 30) << id;
        }
    }
}

TEST(PrayerCalculator, HighLatitudeSummerDropsOnlyTheUnreachableTimes)
{
    // Oslo, 60° N: at midsummer the sun goes only about 6.6° below the horizon.
    PrayerCalculator oslo(59.9139, 10.7522, "Europe/Oslo", CalculationMethod::muslimWorldLeague,
                          AsrMethod::standard, "UTC");
    const auto times = oslo.times(utc(2026, 6, 21, 12));
    EXPECT_FALSE(times.contains(Prayer::fajr));
    EXPECT_FALSE(times.contains(Prayer::isha));
    EXPECT_EQ(times.size(), 4u) << "sunrise, Dhuhr, Asr and Maghrib remain";

    // An Isha fixed after sunset does not need the sun to reach an angle.
    PrayerCalculator osloGulf(59.9139, 10.7522, "Europe/Oslo", CalculationMethod::gulf,
                              AsrMethod::standard, "UTC");
    const auto gulf = osloGulf.times(utc(2026, 6, 21, 12));
    ASSERT_TRUE(gulf.contains(Prayer::isha));
    EXPECT_EQ(minutesBetween(gulf.at(Prayer::maghrib), gulf.at(Prayer::isha)), 90);

    // Above the polar circle the sun does not set at all: sunset, and with it a fixed-delay
    // Isha, are absent, while noon remains.
    PrayerCalculator tromso(69.6492, 18.9553, "Europe/Oslo", CalculationMethod::ummAlQura,
                            AsrMethod::standard, "UTC");
    const auto polar = tromso.times(utc(2026, 6, 21, 12));
    EXPECT_TRUE(polar.contains(Prayer::dhuhr));
    EXPECT_FALSE(polar.contains(Prayer::sunrise));
    EXPECT_FALSE(polar.contains(Prayer::maghrib));
    EXPECT_FALSE(polar.contains(Prayer::isha));
}

TEST(PrayerCalculator, LondonComesOutInLondonClockTime)
{
    // Published almanac values: 21 June 2026 sunrise 04:43, solar noon 13:02, sunset 21:21 BST;
    // 21 December 2026 sunrise 08:04, solar noon 11:58, sunset 15:54 GMT.
    const auto london = calculatorFor("london", CalculationMethod::muslimWorldLeague);
    const auto june = london.times(utc(2026, 6, 21, 12));
    const auto bst = hours(1);
    EXPECT_NEAR(minutesBetween(utc(2026, 6, 21, 4, 43) - bst, june.at(Prayer::sunrise)), 0, 2);
    EXPECT_NEAR(minutesBetween(utc(2026, 6, 21, 13, 2) - bst, june.at(Prayer::dhuhr)), 0, 2);
    EXPECT_NEAR(minutesBetween(utc(2026, 6, 21, 21, 21) - bst, june.at(Prayer::maghrib)), 0, 2);
    const auto december = london.times(utc(2026, 12, 21, 12));
    EXPECT_NEAR(minutesBetween(utc(2026, 12, 21, 8, 4), december.at(Prayer::sunrise)), 0, 2);
    EXPECT_NEAR(minutesBetween(utc(2026, 12, 21, 11, 58), december.at(Prayer::dhuhr)), 0, 2);
    EXPECT_NEAR(minutesBetween(utc(2026, 12, 21, 15, 54), december.at(Prayer::maghrib)), 0, 2);
}

// Each day's times follow the sun, so in UTC a time of day drifts by at most a few minutes from
// one day to the next. A day that used one offset for its base and another for its hours would
// jump by a whole hour.
void expectNoJumpsAround(const std::string& cityID, sys_seconds changeDay)
{
    const auto city = *PrayerCity::with(cityID);
    const auto calculator = calculatorFor(cityID, city.suggestedMethod);
    std::optional<Times> previous;
    for (int offset = -3; offset <= 3; ++offset) {
        const auto times = calculator.times(changeDay + days(offset));
        ASSERT_EQ(times.size(), 6u) << cityID << " day " << offset;
        if (previous) {
            for (const auto& [prayer, instant] : times) {
                const auto drift = minutesBetween(previous->at(prayer) + days(1), instant);
                EXPECT_LE(std::abs(drift), 4)
                    << cityID << " " << rawValue(prayer) << " day " << offset;
            }
        }
        previous = times;
    }
}

TEST(PrayerCalculator, DaylightSavingChangeDaysKeepTheSunsTimes)
{
    // London changes at 01:00 UTC, well after midnight: the day keeps the midnight offset.
    expectNoJumpsAround("london", utc(2026, 3, 29, 12));
    // Beirut and Cairo move their clocks forward at midnight itself, so that day's 00:00 never
    // shows on a clock.
    expectNoJumpsAround("beirut", utc(2026, 3, 29, 12));
    expectNoJumpsAround("cairo", utc(2026, 4, 24, 12));
}

TEST(PrayerCalculator, DaylightSavingChangeDaysUseTheMidnightOffset)
{
    // On 29 March 2026 London is on GMT at midnight and on BST from 01:00 UTC. The day's
    // times keep GMT, so Dhuhr lands near 12:04 UTC as on the day before.
    const auto london = calculatorFor("london", CalculationMethod::muslimWorldLeague);
    const auto spring = london.times(utc(2026, 3, 29, 12));
    EXPECT_NEAR(utcMinuteOfDay(spring.at(Prayer::dhuhr)), 12 * 60 + 5, 3);
    EXPECT_EQ(floor<days>(spring.at(Prayer::dhuhr)), sys_days(2026y / 3 / 29));

    // Beirut on 29 March 2026: the clock goes from 23:59:59 (+02) to 01:00 (+03). The times are
    // the sun's, read on the +03 clock: Dhuhr near 12:43, that is 09:43 UTC.
    const auto beirut = calculatorFor("beirut", CalculationMethod::muslimWorldLeague);
    const auto gap = beirut.times(utc(2026, 3, 29, 12));
    EXPECT_NEAR(utcMinuteOfDay(gap.at(Prayer::dhuhr)), 9 * 60 + 43, 3);
    EXPECT_EQ(floor<days>(gap.at(Prayer::dhuhr)), sys_days(2026y / 3 / 29));
    // Asking at the day's first instant (01:00 +03 = 22:00 UTC the day before) gives that day.
    EXPECT_EQ(beirut.times(utc(2026, 3, 28, 22)), gap);
    // One second earlier it is still the 28th.
    EXPECT_NE(beirut.times(utc(2026, 3, 28, 22) - seconds(1)), gap);

    // Cairo on 24 April 2026 (clocks forward at midnight): Dhuhr near 12:53 on the +03 clock,
    // 09:53 UTC.
    const auto cairo = calculatorFor("cairo", CalculationMethod::egyptian);
    const auto cairoGap = cairo.times(utc(2026, 4, 24, 12));
    EXPECT_NEAR(utcMinuteOfDay(cairoGap.at(Prayer::dhuhr)), 9 * 60 + 53, 3);
}

TEST(PrayerCalculator, TimesAreNotWrappedIntoTheDay)
{
    // A place far east kept on a clock twelve hours behind UTC: its solar noon falls on the
    // previous clock day, and stays there rather than being folded back into the asked day.
    PrayerCalculator farEast(0, 170, "Etc/GMT+12", CalculationMethod::muslimWorldLeague,
                             AsrMethod::standard, "UTC");
    const auto times = farEast.times(utc(2026, 5, 5, 12)); // 00:00 on 5 May at -12
    const auto localMidnight = utc(2026, 5, 5, 12);
    ASSERT_TRUE(times.contains(Prayer::dhuhr));
    EXPECT_LT(times.at(Prayer::dhuhr), localMidnight);
    // Solar noon at 170° E is about 00:40 UTC.
    EXPECT_NEAR(minutesBetween(utc(2026, 5, 5, 0, 40), times.at(Prayer::dhuhr)), 0, 8);
}

TEST(PrayerCalculator, EveryTimeIsOnAWholeMinuteAndInOrder)
{
    for (const auto& city : PrayerCity::all()) {
        for (auto method : allCalculationMethods) {
            PrayerCalculator calculator(city.latitude, city.longitude, city.timeZoneID, method,
                                        AsrMethod::standard, "UTC");
            for (int d = 0; d < 365; d += 7) {
                const auto times = calculator.times(utc(2026, 1, 1, 12) + days(d));
                // Below 42° N every time exists all year; London loses Fajr and Isha by angle
                // around midsummer.
                if (city.id != "london") {
                    ASSERT_EQ(times.size(), 6u) << city.id << " " << rawValue(method) << " " << d;
                }
                std::optional<sys_seconds> last;
                for (const auto& [prayer, instant] : times) {
                    EXPECT_EQ(instant.time_since_epoch().count() % 60, 0);
                    if (last) {
                        EXPECT_LT(*last, instant) << city.id << " " << rawValue(prayer);
                    }
                    last = instant;
                }
            }
        }
    }
}

TEST(PrayerCalculator, UnknownZoneGivesNoTimesAndSaysWhy)
{
    PrayerCalculator calculator(26.2, 50.6, "Asia/Atlantis", CalculationMethod::ummAlQura,
                                AsrMethod::standard, "UTC");
    EXPECT_FALSE(calculator.isValid());
    EXPECT_TRUE(calculator.times(utc(2026, 5, 5, 12)).empty());
    EXPECT_FALSE(calculator.nextDayStart(utc(2026, 5, 5, 12)).has_value());
    ASSERT_FALSE(calculator.warnings().empty());
    EXPECT_NE(calculator.warnings().front().find("Asia/Atlantis"), std::string::npos);

    // A bad Hijri zone only costs the Ramadan reading its zone, not the times.
    PrayerCalculator hijriless(26.2, 50.6, "Asia/Bahrain", CalculationMethod::ummAlQura,
                               AsrMethod::standard, "Mars/Olympus");
    EXPECT_TRUE(hijriless.isValid());
    EXPECT_EQ(hijriless.times(utc(2026, 5, 5, 12)).size(), 6u);
    ASSERT_FALSE(hijriless.warnings().empty());
    EXPECT_NE(hijriless.warnings().front().find("Mars/Olympus"), std::string::npos);
}

TEST(PrayerCalculator, NextDayStartIsTheFollowingLocalMidnight)
{
    const auto bahrain = calculatorFor("manama", CalculationMethod::ummAlQura);
    EXPECT_EQ(bahrain.nextDayStart(utc(2026, 5, 5, 12)), utc(2026, 5, 5, 21));
    EXPECT_EQ(bahrain.nextDayStart(utc(2026, 5, 5, 21)), utc(2026, 5, 6, 21));
    EXPECT_EQ(bahrain.nextDayStart(utc(2026, 12, 31, 22)), utc(2027, 1, 1, 21));
    // The day after the clock skipped midnight begins at 00:00 +03 as usual; the skipped day
    // itself begins at the change, 01:00 +03.
    const auto beirut = calculatorFor("beirut", CalculationMethod::muslimWorldLeague);
    EXPECT_EQ(beirut.nextDayStart(utc(2026, 3, 28, 12)), utc(2026, 3, 28, 22));
    EXPECT_EQ(beirut.nextDayStart(utc(2026, 3, 29, 12)), utc(2026, 3, 29, 21));
    EXPECT_EQ(
        calculatorFor("cairo", CalculationMethod::egyptian).nextDayStart(utc(2026, 4, 23, 12)),
        utc(2026, 4, 23, 22));
    const auto london = calculatorFor("london", CalculationMethod::muslimWorldLeague);
    EXPECT_EQ(london.nextDayStart(utc(2026, 10, 24, 12)), utc(2026, 10, 24, 23));
    EXPECT_EQ(london.nextDayStart(utc(2026, 10, 25, 12)), utc(2026, 10, 26, 0));
}

TEST(PrayerCalculator, CopiesComputeIndependently)
{
    auto original =
        std::make_unique<PrayerCalculator>(calculatorFor("doha", CalculationMethod::qatar));
    const auto expected = original->times(utc(2026, 2, 1, 12));
    PrayerCalculator copy = *original;
    PrayerCalculator assigned = calculatorFor("london", CalculationMethod::isna);
    assigned = *original;
    original.reset();
    EXPECT_EQ(copy.times(utc(2026, 2, 1, 12)), expected);
    EXPECT_EQ(assigned.times(utc(2026, 2, 1, 12)), expected);
}

} // namespace
} // namespace navro
