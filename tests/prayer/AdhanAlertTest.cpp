#include "prayer/AdhanAlert.h"

#include "FakeDesktopNotifier.h"
#include "FakeSettingsStore.h"
#include "FakeSystemTimeEvents.h"
#include "FakeTimerParts.h"
#include "ManualClock.h"
#include "app/AppSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono;
using ::testing::ElementsAre;
using Event = SystemTimeEvents::Event;

WallTime wall(sys_seconds instant)
{
    return time_point_cast<Duration>(instant);
}

struct Toasted {
    std::string title, detail;
    double seconds;
    bool operator==(const Toasted&) const = default;
};

// The prayer service of Manama (+03 all year) from 00:00 UTC on 5 May 2026, with its alert.
class AdhanAlertTest : public ::testing::Test {
protected:
    AdhanAlertTest()
    {
        settings.setPrayerCityID(QStringLiteral("manama"));
        service = std::make_unique<PrayerService>(settings, clock, events);
        alert = std::make_unique<AdhanAlert>(
            *service, settings, clock, notifier, sound,
            [this](const std::string& title, const std::string& detail, double seconds) {
                toasts.push_back({title, detail, seconds});
            });
    }

    WallTime timeOf(Prayer prayer) const { return wall(service->today().at(prayer)); }

    std::vector<std::string> titles() const
    {
        std::vector<std::string> list;
        for (const auto& shown : notifier.shown)
            list.push_back(shown.title);
        return list;
    }

    FakeSettingsStore store;
    ManualClock clock{wall(sys_days(year(2026) / May / 5))};
    FakeSystemTimeEvents events;
    AppSettings settings{store, [] { return QStringList{"en-GB"}; }};
    FakeDesktopNotifier notifier;
    FakeSoundPlayer sound;
    std::vector<Toasted> toasts;
    std::unique_ptr<PrayerService> service;
    std::unique_ptr<AdhanAlert> alert;
};

TEST_F(AdhanAlertTest, CallsEachOfTheFivePrayersAtItsTimeButNotSunrise)
{
    const WallTime dhuhr = timeOf(Prayer::dhuhr);
    clock.advanceTo(dhuhr - 1s);
    EXPECT_THAT(titles(), ElementsAre("Time for Fajr"));
    clock.advanceTo(dhuhr);
    EXPECT_THAT(titles(), ElementsAre("Time for Fajr", "Time for Dhuhr"));
    EXPECT_EQ(notifier.shown.back().body, "Manama");
    EXPECT_EQ(notifier.shown.back().key, "adhan");
    EXPECT_EQ(toasts.back(), (Toasted{"Time for Dhuhr", "Manama", 60}));

    clock.advanceTo(wall(sys_days(year(2026) / May / 5)) + hours(23));
    EXPECT_THAT(titles(), ElementsAre("Time for Fajr", "Time for Dhuhr", "Time for Asr",
                                      "Time for Maghrib", "Time for Isha"));
    EXPECT_EQ(sound.played.size(), 5u);
    EXPECT_EQ(toasts.size(), 5u);
}

TEST_F(AdhanAlertTest, EachSwitchTurnsOffItsOwnPart)
{
    settings.setAdhanSound(false);
    clock.advanceTo(timeOf(Prayer::fajr));
    EXPECT_EQ(notifier.shown.size(), 1u);
    EXPECT_TRUE(sound.played.empty());
    EXPECT_EQ(toasts.size(), 1u);

    settings.setAdhanSound(true);
    settings.setAdhanAlert(false);
    clock.advanceTo(timeOf(Prayer::dhuhr));
    EXPECT_EQ(notifier.shown.size(), 1u) << "no notification, and no sound without it";
    EXPECT_TRUE(sound.played.empty());
    EXPECT_EQ(toasts.size(), 2u) << "the notch has a switch of its own";

    settings.setAdhanAlert(true);
    settings.setPrayerInNotch(false);
    clock.advanceTo(timeOf(Prayer::asr));
    EXPECT_EQ(notifier.shown.size(), 2u);
    EXPECT_EQ(sound.played.size(), 1u);
    EXPECT_EQ(toasts.size(), 2u);
}

TEST_F(AdhanAlertTest, SpeaksTheInterfaceLanguage)
{
    settings.setLanguageRaw(QStringLiteral("arabic"));
    clock.advanceTo(timeOf(Prayer::fajr));
    ASSERT_EQ(notifier.shown.size(), 1u);
    EXPECT_EQ(notifier.shown[0].title,
              std::string("حان الآن وقت صلاة ").append(title(Prayer::fajr).arabic));
    EXPECT_EQ(notifier.shown[0].body, "المنامة");
}

TEST_F(AdhanAlertTest, APrayerSleptThroughOrAChangedCityIsNotCalledLate)
{
    const WallTime dhuhr = timeOf(Prayer::dhuhr);
    clock.advanceTo(dhuhr - 1min);
    notifier.shown.clear();
    // Changing the city calls nothing.
    service->chooseCity(QStringLiteral("riyadh"));
    service->chooseCity(QStringLiteral("manama"));
    EXPECT_TRUE(notifier.shown.empty());

    // Asleep over Dhuhr: no timer ran, and on waking it is long past.
    clock.setWallTime(dhuhr + 20min);
    events.send(Event::resumed);
    EXPECT_TRUE(notifier.shown.empty());
    EXPECT_EQ(toasts.size(), 1u) << "only Fajr's";

    // Woken within five minutes of Asr, it is still called.
    const WallTime asr = timeOf(Prayer::asr);
    clock.advanceTo(asr - 1min);
    clock.setWallTime(asr + 4min);
    events.send(Event::resumed);
    EXPECT_THAT(titles(), ElementsAre("Time for Asr"));

    // A city chosen just after the last city's Maghrib, before its timer ran, is no call of
    // that Maghrib under the new city's name.
    clock.setWallTime(timeOf(Prayer::maghrib) + 1min);
    service->chooseCity(QStringLiteral("riyadh"));
    EXPECT_THAT(titles(), ElementsAre("Time for Asr"));
}

} // namespace
} // namespace navro
