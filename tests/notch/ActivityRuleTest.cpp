#include "notch/ActivityRule.h"

#include <functional>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;
using Kind = ClosedActivity::Kind;

const WallTime now = WallTime(std::chrono::hours(24 * 365 * 56));

Meeting meetingStartingIn(Duration fromNow, Duration length = 30min)
{
    return Meeting{"E1",   "Design review", now + fromNow, now + fromNow + length,    false,
                   "Work", 0x3366ff,        "Room 4",      "https://meet.example/abc"};
}

Toast toast(std::string id)
{
    return Toast{std::move(id), "battery.100", "Charged", "Battery full", std::nullopt};
}

// Every rule has something to show.
ActivityInputs everythingActive()
{
    ActivityInputs inputs;
    inputs.now = now;
    inputs.isRecording = true;
    inputs.toast = toast("A");
    inputs.timerState = TimerState::running;
    inputs.nextMeeting = meetingStartingIn(2min);
    inputs.hasTransfers = true;
    inputs.playbackRate = 1.0;
    return inputs;
}

std::optional<Kind> kindOf(const ActivityInputs& inputs)
{
    auto activity = computeActivity(inputs);
    return activity ? std::optional(activity->kind()) : std::nullopt;
}

// Switches the rules off from the top, one at a time, and names the winner after each step.
std::vector<std::optional<Kind>> winnersFromTheTop(ActivityInputs inputs)
{
    std::vector<std::optional<Kind>> winners{kindOf(inputs)};
    for (auto off : std::vector<std::function<void(ActivityInputs&)>>{
             [](auto& in) { in.isRecording = false; }, [](auto& in) { in.toast.reset(); },
             [](auto& in) { in.timerState = TimerState::idle; },
             [](auto& in) { in.nextMeeting.reset(); }, [](auto& in) { in.hasTransfers = false; },
             [](auto& in) { in.playbackRate.reset(); }}) {
        off(inputs);
        winners.push_back(kindOf(inputs));
    }
    return winners;
}

TEST(ActivityPriority, EachRuleWinsOverEveryRuleBelowItAndEachSettingSilencesOnlyItsOwn)
{
    using Winners = std::vector<std::optional<Kind>>;
    auto inputs = everythingActive();
    EXPECT_EQ(winnersFromTheTop(inputs),
              (Winners{Kind::recording, Kind::toast, Kind::timer, Kind::meeting, Kind::transfer,
                       Kind::music, std::nullopt}));
    inputs.calendarInNotch = false;
    EXPECT_EQ(winnersFromTheTop(inputs)[3], Kind::transfer);
    inputs.transfersInNotch = false;
    EXPECT_EQ(winnersFromTheTop(inputs)[3], Kind::music);
    // Recording, toast and timer ignore every setting.
    inputs.musicInNotch = false;
    EXPECT_EQ(winnersFromTheTop(inputs),
              (Winners{Kind::recording, Kind::toast, Kind::timer, std::nullopt, std::nullopt,
                       std::nullopt, std::nullopt}));
}

TEST(ActivityTimer, PausedAndFinishedTimersKeepTheTimerActivity)
{
    auto inputs = everythingActive();
    inputs.isRecording = false;
    inputs.toast.reset();
    for (auto state : {TimerState::running, TimerState::paused, TimerState::finished}) {
        inputs.timerState = state;
        EXPECT_EQ(kindOf(inputs), Kind::timer) << int(state);
    }
}

// From ten minutes before until five minutes after its start, and never once it has ended.
TEST(ActivityMeeting, ShowsFromTenMinutesBeforeUntilFiveMinutesAfterItsStart)
{
    struct Case {
        Duration startsIn;
        Duration length;
        bool shows;
    };
    for (auto [startsIn, length, shows] :
         {Case{600s, 30min, true}, Case{601s, 30min, false}, Case{600001ms, 30min, false},
          Case{0s, 30min, true}, Case{-299s, 30min, true}, Case{-299999ms, 30min, true},
          Case{-300s, 30min, false}, Case{-301s, 30min, false}, Case{-2min, 2min, false},
          Case{-2min, 2min + 1ms, true}}) {
        ActivityInputs inputs;
        inputs.now = now;
        inputs.nextMeeting = meetingStartingIn(startsIn, length);
        EXPECT_EQ(kindOf(inputs) == Kind::meeting, shows)
            << startsIn.count() << " ms, lasting " << length.count() << " ms";
    }
}

TEST(ActivityMusic, ShowsOnlyWhileTrackInformationSaysItIsPlaying)
{
    ActivityInputs inputs;
    inputs.now = now;
    // Paused, reversed, no information at all, then playing slowly.
    for (auto [rate, shows] : {std::pair<std::optional<double>, bool>{0.0, false},
                               {-1.0, false},
                               {std::nullopt, false},
                               {0.5, true}}) {
        inputs.playbackRate = rate;
        EXPECT_EQ(kindOf(inputs) == Kind::music, shows) << rate.value_or(-99);
    }
}

TEST(ClosedActivityEquality, SameKindWithEqualPayloadOnly)
{
    EXPECT_EQ(ClosedActivity::ofToast(toast("A")), ClosedActivity::ofToast(toast("A")));
    EXPECT_NE(ClosedActivity::ofToast(toast("A")), ClosedActivity::ofToast(toast("B")))
        << "a new notice with the same texts is a new notice";
    EXPECT_NE(ClosedActivity::timer(), ClosedActivity::music());
    EXPECT_EQ(ClosedActivity::prayerNow(Prayer::asr), ClosedActivity::prayerNow(Prayer::asr));
    EXPECT_NE(ClosedActivity::prayerNow(Prayer::asr), ClosedActivity::prayerSoon(Prayer::asr, now));
    EXPECT_NE(ClosedActivity::prayerSoon(Prayer::asr, now),
              ClosedActivity::prayerSoon(Prayer::asr, now + 1min));
    auto moved = meetingStartingIn(5min);
    moved.location = "Room 5";
    EXPECT_NE(ClosedActivity::ofMeeting(meetingStartingIn(5min)), ClosedActivity::ofMeeting(moved));
}

} // namespace
} // namespace navro
