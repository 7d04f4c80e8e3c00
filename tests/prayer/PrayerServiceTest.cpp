#include "prayer/PrayerService.h"

#include "FakeSettingsStore.h"
#include "FakeSystemTimeEvents.h"
#include "ManualClock.h"
#include "app/AppSettings.h"
#include "app/Log.h"

#include <QSet>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono;
using Event = SystemTimeEvents::Event;
using std::chrono::seconds; // not the Clock helper of the same name

sys_seconds utc(int y, unsigned m, unsigned d, int hour = 0, int minute = 0)
{
    return sys_days(year(y) / month(m) / day(d)) + hours(hour) + minutes(minute);
}

WallTime wall(sys_seconds instant)
{
    return time_point_cast<Duration>(instant);
}

// Counts the emissions of one signal for as long as it lives.
class SignalCount {
public:
    template <typename Signal> SignalCount(PrayerService* service, Signal signal)
    {
        QObject::connect(service, signal, &context_, [this] { ++count_; });
    }
    int count() const { return count_; }

private:
    QObject context_;
    int count_ = 0;
};

// What the service should publish for a city, computed independently of its bookkeeping.
std::map<Prayer, sys_seconds> expectedTimes(sys_seconds day, const std::string& cityID = "manama",
                                            CalculationMethod method = CalculationMethod::ummAlQura,
                                            AsrMethod asr = AsrMethod::standard)
{
    const auto city = *PrayerCity::with(cityID);
    return PrayerCalculator(city.latitude, city.longitude, city.timeZoneID, method, asr,
                            "Asia/Riyadh")
        .times(day);
}

// A service over a fresh settings store, a manual clock and fake system events.
struct Fixture {
    explicit Fixture(sys_seconds start, std::string cityID = "manama")
        : clock(wall(start)), settings(store, [] { return QStringList{"en-GB"}; })
    {
        settings.setPrayerCityID(QString::fromStdString(cityID));
        service = std::make_unique<PrayerService>(settings, clock, events);
    }
    FakeSettingsStore store;
    ManualClock clock;
    FakeSystemTimeEvents events;
    AppSettings settings;
    std::unique_ptr<PrayerService> service;
};

// Manama is on +03 all year: 12:00 UTC is 15:00 there, 21:00 UTC is midnight.
const sys_seconds mayAfternoon = utc(2026, 5, 5, 12);

TEST(PrayerService, PublishesTodaysTimesForTheStoredCity)
{
    Fixture f(mayAfternoon, "doha");
    EXPECT_EQ(f.service->city().id, "doha");
    EXPECT_EQ(f.service->today(), expectedTimes(mayAfternoon, "doha"));
    const auto list = f.service->todayTimes();
    ASSERT_EQ(list.size(), 6);
    const QVariantMap fajr = list.front().toMap();
    EXPECT_EQ(fajr.value("prayer").toString(), "fajr");
    const qint64 fajrSeconds = f.service->today().at(Prayer::fajr).time_since_epoch().count();
    EXPECT_EQ(fajr.value("time").toDateTime().toSecsSinceEpoch(), fajrSeconds);
    // Doha's clock is UTC+3 all year, whatever the machine's zone.
    EXPECT_EQ(
        fajr.value("clock").toString(),
        QDateTime::fromSecsSinceEpoch(fajrSeconds, Qt::OffsetFromUTC, 3 * 3600).toString("HH:mm"));
    EXPECT_EQ(f.service->nextPrayerClock(), list[4].toMap().value("clock").toString()); // Maghrib
}

TEST(PrayerService, UnknownOrWronglyCasedCityFallsBackToManamaAndSaysSo)
{
    for (const char* id : {"Manama", "atlantis"}) {
        CapturingLogSink log;
        Fixture f(mayAfternoon, id);
        EXPECT_EQ(f.service->city(), PrayerCity::manama()) << id;
        EXPECT_EQ(f.service->today(), expectedTimes(mayAfternoon));
        EXPECT_TRUE(log.contains(std::string("\"") + id + "\"")) << id;
    }
}

TEST(PrayerService, RecomputesWhenCityMethodOrAsrChangesAndAChosenCityBringsItsMethod)
{
    Fixture f(mayAfternoon);
    SignalCount city(f.service.get(), &PrayerService::cityChanged);
    SignalCount times(f.service.get(), &PrayerService::timesChanged);
    SignalCount changed(f.service.get(), &PrayerService::prayerChanged);

    f.settings.setPrayerCityID("kuwait");
    EXPECT_EQ(city.count(), 1);
    EXPECT_EQ(times.count(), 1);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(f.service->today(), expectedTimes(mayAfternoon, "kuwait"));

    f.settings.setPrayerMethod(CalculationMethod::kuwait);
    EXPECT_EQ(city.count(), 1);
    EXPECT_EQ(times.count(), 2);
    EXPECT_EQ(f.service->today(), expectedTimes(mayAfternoon, "kuwait", CalculationMethod::kuwait));

    const auto standardAsr = f.service->today().at(Prayer::asr);
    f.settings.setAsrMethod(AsrMethod::hanafi);
    EXPECT_EQ(times.count(), 3);
    EXPECT_GT(f.service->today().at(Prayer::asr), standardAsr);
    EXPECT_EQ(changed.count(), 3);

    // Choosing a city switches to its method in one step.
    f.service->chooseCity("cairo");
    EXPECT_EQ(f.settings.prayerCityID(), "cairo");
    EXPECT_EQ(f.settings.prayerMethod(), CalculationMethod::egyptian);
    EXPECT_EQ(changed.count(), 4);
    EXPECT_EQ(f.service->today(),
              expectedTimes(mayAfternoon, "cairo", CalculationMethod::egyptian, AsrMethod::hanafi));
    CapturingLogSink log;
    f.service->chooseCity("Cairo");
    EXPECT_EQ(f.settings.prayerCityID(), "cairo");
    EXPECT_TRUE(log.contains("\"Cairo\""));
}

TEST(PrayerService, NextPrayerSkipsSunriseAndWrapsToTomorrowsFajr)
{
    const auto today = expectedTimes(mayAfternoon);
    const auto tomorrow = expectedTimes(mayAfternoon + days(1));
    {
        Fixture f(today.at(Prayer::fajr) + minutes(1));
        ASSERT_TRUE(f.service->upcoming());
        EXPECT_EQ(f.service->upcoming()->prayer, Prayer::dhuhr);
        EXPECT_EQ(f.service->nextPrayerRaw(), "dhuhr");
    }
    {
        Fixture f(today.at(Prayer::isha) + minutes(5));
        ASSERT_TRUE(f.service->upcoming());
        EXPECT_EQ(f.service->upcoming()->prayer, Prayer::fajr);
        EXPECT_EQ(f.service->upcoming()->at, tomorrow.at(Prayer::fajr));
        // Still the same civil day in Manama: today's list has not moved on.
        EXPECT_EQ(f.service->today(), today);
        EXPECT_EQ(f.service->nextPrayerTime().toSecsSinceEpoch(),
                  tomorrow.at(Prayer::fajr).time_since_epoch().count());
    }
    {
        // Exactly at a prayer's instant that prayer has come; the next one is the following.
        Fixture f(today.at(Prayer::asr));
        EXPECT_EQ(f.service->upcoming()->prayer, Prayer::maghrib);
    }
}

TEST(PrayerService, WakesAtEachPrayerAndAtTheCitysMidnightOnly)
{
    const auto today = expectedTimes(mayAfternoon);
    Fixture f(today.at(Prayer::maghrib) - minutes(30));
    SignalCount next(f.service.get(), &PrayerService::nextPrayerChanged);
    SignalCount times(f.service.get(), &PrayerService::timesChanged);
    SignalCount countdown(f.service.get(), &PrayerService::countdownTextChanged);
    EXPECT_EQ(f.service->upcoming()->prayer, Prayer::maghrib);
    EXPECT_EQ(f.clock.pendingCount(), 1u);

    // Nothing happens until the moment Maghrib comes: no ticking in between.
    f.clock.advanceTo(wall(today.at(Prayer::maghrib)) - milliseconds(1));
    EXPECT_EQ(next.count(), 0);
    EXPECT_EQ(countdown.count(), 0);
    f.clock.advance(milliseconds(1));
    EXPECT_EQ(next.count(), 1);
    EXPECT_EQ(f.service->upcoming()->prayer, Prayer::isha);

    f.clock.advanceTo(wall(today.at(Prayer::isha)));
    EXPECT_EQ(next.count(), 2);
    EXPECT_EQ(f.service->upcoming()->prayer, Prayer::fajr);
    EXPECT_EQ(times.count(), 0);

    // Midnight in Manama (21:00 UTC): the new day's times, with no wait in between.
    const auto midnight = utc(2026, 5, 5, 21);
    std::optional<WallTime> publishedAt;
    QObject::connect(f.service.get(), &PrayerService::timesChanged,
                     [&] { publishedAt = f.clock.now(); });
    f.clock.advanceTo(wall(midnight) + hours(1));
    EXPECT_EQ(times.count(), 1);
    EXPECT_EQ(publishedAt, wall(midnight));
    EXPECT_EQ(f.service->today(), expectedTimes(midnight));
    EXPECT_EQ(f.clock.pendingCount(), 1u);
}

TEST(PrayerService, CountdownIsFormattedAndTicksEverySecondOnlyWhileWatched)
{
    const auto today = expectedTimes(mayAfternoon);
    const auto maghrib = today.at(Prayer::maghrib);
    Fixture f(maghrib - minutes(65) - seconds(9));
    EXPECT_EQ(f.service->countdownText(), "1:05:09");
    SignalCount countdown(f.service.get(), &PrayerService::countdownTextChanged);

    f.clock.advance(seconds(10));
    EXPECT_EQ(countdown.count(), 0);
    EXPECT_EQ(f.service->countdownText(), "1:05:09"); // stale while nobody looks

    f.service->watchCountdown();
    f.service->watchCountdown();
    EXPECT_EQ(f.service->countdownViewers(), 2);
    EXPECT_EQ(f.service->countdownText(), "1:04:59");
    EXPECT_EQ(countdown.count(), 1);
    f.clock.advance(seconds(3));
    EXPECT_EQ(f.service->countdownText(), "1:04:56");
    EXPECT_EQ(countdown.count(), 4);

    // A half second in, the text still shows the whole seconds left (rounded up).
    f.clock.advance(milliseconds(500));
    EXPECT_EQ(f.service->countdownText(), "1:04:56");

    // One of the two viewers goes: still ticking, on the half seconds now.
    f.service->stopWatchingCountdown();
    f.clock.advance(seconds(5));
    EXPECT_EQ(countdown.count(), 9);
    EXPECT_EQ(f.service->countdownText(), "1:04:51");
    f.service->stopWatchingCountdown();
    f.clock.advance(seconds(5));
    EXPECT_EQ(countdown.count(), 9);
    f.service->stopWatchingCountdown(); // more stops than starts are ignored
    EXPECT_EQ(f.service->countdownViewers(), 0);

    EXPECT_EQ(PrayerService::countdownFor(hours(2) + minutes(3) + seconds(4)), "2:03:04");
    EXPECT_EQ(PrayerService::countdownFor(milliseconds(1)), "0:00:01");
    EXPECT_EQ(PrayerService::countdownFor(milliseconds(0)), "0:00:00");
    EXPECT_EQ(PrayerService::countdownFor(milliseconds(-5)), "0:00:00");
    EXPECT_EQ(PrayerService::countdownFor(hours(25)), "25:00:00");
}

TEST(PrayerService, ClockSetOrResumeRecomputesAtOnce)
{
    for (auto event : {Event::clockChanged, Event::resumed}) {
        Fixture f(mayAfternoon);
        SignalCount times(f.service.get(), &PrayerService::timesChanged);
        // The wall clock moves two days on; the pending wait knows nothing of it.
        f.clock.setWallTime(wall(mayAfternoon + days(2)));
        EXPECT_EQ(times.count(), 0);
        f.events.send(event);
        EXPECT_EQ(times.count(), 1);
        EXPECT_EQ(f.service->today(), expectedTimes(mayAfternoon + days(2)));
        // And it sleeps until the next moment that matters for the new time.
        EXPECT_EQ(f.clock.pendingCount(), 1u);
    }
}

TEST(PrayerService, TimeZoneChangeMovesTheRamadanReadingAndRepublishes)
{
    // At 22:30 UTC on 28 February 2025 it is 1 Ramadan in Riyadh and 29 Shaban in Los Angeles;
    // Makkah's own day is 1 March.
    Fixture f(utc(2025, 2, 28, 22, 30), "makkah");
    auto ishaGap = [&] {
        return duration_cast<minutes>(f.service->today().at(Prayer::isha) -
                                      f.service->today().at(Prayer::maghrib))
            .count();
    };
    EXPECT_EQ(ishaGap(), 120);
    SignalCount times(f.service.get(), &PrayerService::timesChanged);
    SignalCount next(f.service.get(), &PrayerService::nextPrayerChanged);

    f.events.zone = "America/Los_Angeles";
    f.events.send(Event::timeZoneChanged);
    EXPECT_EQ(ishaGap(), 90);
    EXPECT_EQ(times.count(), 1);
    // The next prayer is the same instant, but every view shows it on another clock.
    EXPECT_EQ(next.count(), 1);
}

TEST(PrayerService, CitiesAreGroupedByCountryInTheCurrentLanguage)
{
    Fixture f(mayAfternoon);
    auto groups = f.service->citiesByCountry();
    QSet<QString> countries;
    qsizetype total = 0;
    for (const auto& group : groups) {
        countries << group.toMap().value("country").toString();
        total += group.toMap().value("cities").toList().size();
    }
    EXPECT_EQ(countries.size(), groups.size()) << "each country once";
    EXPECT_EQ(total, qsizetype(PrayerCity::all().size()));
    EXPECT_EQ(groups.front().toMap().value("country").toString(), "Bahrain");

    f.settings.setLanguage(AppLanguage::arabic);
    groups = f.service->citiesByCountry();
    EXPECT_EQ(groups.front().toMap().value("country").toString(), "البحرين");
    const auto methods = f.service->methods();
    ASSERT_EQ(methods.size(), qsizetype(allCalculationMethods.size()));
    EXPECT_EQ(methods.front().toMap().value("title").toString(), "أم القرى (مكة)");
}

TEST(PrayerService, StopsListeningWhenGone)
{
    Fixture f(mayAfternoon);
    EXPECT_EQ(f.events.handlerCount(), 1u);
    f.service.reset();
    EXPECT_EQ(f.events.handlerCount(), 0u);
    EXPECT_EQ(f.clock.pendingCount(), 0u);
    f.events.send(Event::clockChanged); // must not reach the destroyed service
}

} // namespace
} // namespace navro
