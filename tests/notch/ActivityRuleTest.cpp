#include "notch/ActivityRule.h"

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

TEST(ActivityPriority, EachRuleWinsOverEveryRuleBelowIt)
{
    auto inputs = everythingActive();
    EXPECT_EQ(kindOf(inputs), Kind::recording);
    inputs.isRecording = false;
    EXPECT_EQ(kindOf(inputs), Kind::toast);
    inputs.toast.reset();
    EXPECT_EQ(kindOf(inputs), Kind::timer);
    inputs.timerState = TimerState::idle;
    EXPECT_EQ(kindOf(inputs), Kind::meeting);
    inputs.nextMeeting.reset();
    EXPECT_EQ(kindOf(inputs), Kind::transfer);
    inputs.hasTransfers = false;
    EXPECT_EQ(kindOf(inputs), Kind::music);
    inputs.playbackRate.reset();
    EXPECT_EQ(kindOf(inputs), std::nullopt);
}

TEST(ActivityPriority, RecordingToastAndTimerIgnoreEverySetting)
{
    auto inputs = everythingActive();
    inputs.calendarInNotch = inputs.transfersInNotch = inputs.musicInNotch = false;
    EXPECT_EQ(kindOf(inputs), Kind::recording);
    inputs.isRecording = false;
    EXPECT_EQ(kindOf(inputs), Kind::toast);
    inputs.toast.reset();
    EXPECT_EQ(kindOf(inputs), Kind::timer);
    inputs.timerState = TimerState::idle;
    EXPECT_EQ(kindOf(inputs), std::nullopt);
}

TEST(ActivityPriority, EachSettingSilencesOnlyItsOwnRule)
{
    auto inputs = everythingActive();
    inputs.isRecording = false;
    inputs.toast.reset();
    inputs.timerState = TimerState::idle;
    inputs.calendarInNotch = false;
    EXPECT_EQ(kindOf(inputs), Kind::transfer);
    inputs.transfersInNotch = false;
    EXPECT_EQ(kindOf(inputs), Kind::music);
    inputs.musicInNotch = false;
    EXPECT_EQ(kindOf(inputs), std::nullopt);
}

TEST(ActivityTimer, PausedAndFinishedTimersKeepTheTimerActivityAndIdleLetsOthersShow)
{
    auto inputs = everythingActive();
    inputs.isRecording = false;
    inputs.toast.reset();
    for (auto state : {TimerState::running, TimerState::paused, TimerState::finished}) {
        inputs.timerState = state;
        EXPECT_EQ(kindOf(inputs), Kind::timer) << int(state);
    }
    inputs.timerState = TimerState::idle;
    EXPECT_EQ(kindOf(inputs), Kind::meeting);
    inputs.nextMeeting.reset();
    inputs.hasTransfers = false;
    EXPECT_EQ(kindOf(inputs), Kind::music);
}

TEST(ActivityMeeting, ShowsFromTenMinutesBeforeUntilFiveMinutesAfterItsStart)
{
    struct Case {
        Duration startsIn;
        bool shows;
    };
    for (auto [startsIn, shows] :
         {Case{600s, true}, Case{601s, false}, Case{600001ms, false}, Case{0s, true},
          Case{-299s, true}, Case{-299999ms, true}, Case{-300s, false}, Case{-301s, false}}) {
        ActivityInputs inputs;
        inputs.now = now;
        inputs.nextMeeting = meetingStartingIn(startsIn);
        EXPECT_EQ(kindOf(inputs) == Kind::meeting, shows) << startsIn.count() << " ms";
    }
}

TEST(ActivityMeeting, NeverShowsOnceItHasEnded)
{
    ActivityInputs inputs;
    inputs.now = now;
    inputs.nextMeeting = meetingStartingIn(-2min, 2min); // ends exactly now
    EXPECT_EQ(kindOf(inputs), std::nullopt);
    inputs.nextMeeting = meetingStartingIn(-2min, 2min + 1ms);
    EXPECT_EQ(kindOf(inputs), Kind::meeting);
}

TEST(ActivityMeeting, CarriesTheWholeRecord)
{
    ActivityInputs inputs;
    inputs.now = now;
    inputs.nextMeeting = meetingStartingIn(5min);
    auto activity = computeActivity(inputs);
    ASSERT_TRUE(activity && activity->meeting());
    EXPECT_EQ(*activity->meeting(), *inputs.nextMeeting);
}

TEST(ActivityMusic, ShowsOnlyWhileTrackInformationSaysItIsPlaying)
{
    ActivityInputs inputs;
    inputs.now = now;
    inputs.playbackRate = 0.0;
    EXPECT_EQ(kindOf(inputs), std::nullopt) << "paused";
    inputs.playbackRate = -1.0;
    EXPECT_EQ(kindOf(inputs), std::nullopt);
    inputs.playbackRate.reset();
    EXPECT_EQ(kindOf(inputs), std::nullopt) << "no information";
    inputs.playbackRate = 0.5;
    EXPECT_EQ(kindOf(inputs), Kind::music);
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
