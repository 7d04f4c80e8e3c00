#include "notch/ActivityCenter.h"

#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "app/AppSettings.h"
#include "app/Log.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;
using Kind = ClosedActivity::Kind;

class ActivityCenterTest : public ::testing::Test {
protected:
    ActivityCenterTest()
    {
        QObject::connect(&center, &ActivityCenter::currentChanged, [this] { ++published; });
    }

    std::optional<Kind> kind() const
    {
        return center.current() ? std::optional(center.current()->kind()) : std::nullopt;
    }

    Meeting meetingStartingIn(Duration fromNow)
    {
        const auto start = clock.now() + fromNow;
        return Meeting{"E1", "Stand-up", start, start + 15min, false, "Work", {}, {}, {}};
    }

    Toast notice(std::string title)
    {
        return ActivityCenter::makeToast("externaldrive", std::move(title), "Mounted");
    }

    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    ActivityCenter center{clock, settings};
    int published = 0;
};

TEST_F(ActivityCenterTest, AtRestItPublishesNothingAndAnUnchangedInputCostsNoEvaluation)
{
    EXPECT_EQ(center.current(), std::nullopt);
    center.setRecording(false);
    center.setNextMeeting(std::nullopt);
    center.setPlaybackRate(std::nullopt);
    EXPECT_EQ(clock.pendingCount(), 0u);
    clock.advance(1min);
    EXPECT_EQ(published, 0);
}

TEST_F(ActivityCenterTest, EvaluatesOnTheNextTurnOnceForAllChangesOfATurn)
{
    const auto before = center.evaluationCount();
    center.setPlaybackRate(1.0);
    center.setTransfersInProgress(true);
    center.setTimerState(TimerState::running);
    center.setRecording(true);
    settings.setMusicInNotch(false);
    EXPECT_EQ(center.current(), std::nullopt) << "inputs are read on the next turn";

    clock.runDue();

    EXPECT_EQ(center.evaluationCount(), before + 1);
    EXPECT_EQ(published, 1);
    EXPECT_EQ(kind(), Kind::recording);
}

TEST_F(ActivityCenterTest, PublishesOnlyRealChanges)
{
    center.setTimerState(TimerState::running);
    clock.runDue();
    center.setTimerState(TimerState::paused);
    clock.runDue();
    center.notePrayerChanged();
    clock.runDue();
    center.update();
    EXPECT_EQ(kind(), Kind::timer);
    EXPECT_EQ(published, 1);
}

TEST_F(ActivityCenterTest, TimeAloneWakesItOnlyForTheNextMeetingsWindow)
{
    // Without a meeting, or with one that has ended, nothing changes with time and nothing waits.
    clock.advance(1h);
    EXPECT_EQ(clock.pendingCount(), 0u);
    center.setNextMeeting(meetingStartingIn(-20min));
    clock.runDue();
    EXPECT_EQ(center.current(), std::nullopt);
    EXPECT_EQ(clock.pendingCount(), 0u);

    // Enters its 10-minute window 20 s from now: one wake-up then, not a loop before it.
    center.setNextMeeting(meetingStartingIn(620s));
    clock.runDue();
    EXPECT_EQ(center.current(), std::nullopt);
    const auto before = center.evaluationCount();
    clock.advance(19s);
    EXPECT_EQ(center.current(), std::nullopt);
    EXPECT_EQ(center.evaluationCount(), before);
    clock.advance(1s);
    EXPECT_EQ(kind(), Kind::meeting);

    // Inside the window every 15 s; 5 minutes after its start it goes at the look that follows,
    // and then time changes nothing more.
    clock.advance(620s + 300s - 20s - 1s);
    EXPECT_EQ(kind(), Kind::meeting);
    clock.advance(15s);
    EXPECT_EQ(center.current(), std::nullopt);
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(ActivityCenterTest, TurningTheCalendarOffRemovesTheMeetingOnTheNextEvaluation)
{
    center.setNextMeeting(meetingStartingIn(2min));
    clock.runDue();
    ASSERT_EQ(kind(), Kind::meeting);

    settings.setCalendarInNotch(false);
    clock.runDue();
    EXPECT_EQ(center.current(), std::nullopt);
    EXPECT_EQ(published, 2);
}

TEST_F(ActivityCenterTest, AToastShowsForItsDurationAndThenGoes)
{
    center.setPlaybackRate(1.0);
    clock.runDue();
    int toastSignals = 0;
    QObject::connect(&center, &ActivityCenter::toastChanged, [&] { ++toastSignals; });

    const auto shown = notice("USB drive");
    center.showToast(shown, 4);
    EXPECT_EQ(center.toast(), shown);
    clock.runDue();
    ASSERT_EQ(kind(), Kind::toast);
    EXPECT_EQ(*center.current()->toast(), shown);

    clock.advance(3999ms);
    EXPECT_EQ(kind(), Kind::toast);
    clock.advance(1ms);
    EXPECT_EQ(center.toast(), std::nullopt);
    EXPECT_EQ(kind(), Kind::music);
    EXPECT_EQ(toastSignals, 2);
}

TEST_F(ActivityCenterTest, ASecondToastReplacesTheFirstAndOutlivesTheFirstsExpiry)
{
    center.showToast(notice("first"), 5);
    clock.advance(3s);
    const auto second = notice("second");
    center.showToast(second, 5);
    clock.runDue();
    EXPECT_EQ(*center.current()->toast(), second);

    clock.advance(2s); // when the first would have expired
    EXPECT_EQ(center.toast(), second);
    EXPECT_EQ(*center.current()->toast(), second);
    clock.advance(3s);
    EXPECT_EQ(center.toast(), std::nullopt);
    EXPECT_EQ(center.current(), std::nullopt);
}

TEST_F(ActivityCenterTest, ARecordingHidesAToastThatStillExpiresOnTime)
{
    center.setRecording(true);
    clock.runDue();
    center.showToast(notice("Screenshot saved"), 3);
    clock.runDue();
    EXPECT_EQ(kind(), Kind::recording);
    EXPECT_TRUE(center.toast());

    clock.advance(3s);
    EXPECT_EQ(center.toast(), std::nullopt);
    center.setRecording(false);
    clock.runDue();
    EXPECT_EQ(center.current(), std::nullopt) << "an expired notice is not shown later";
    EXPECT_EQ(published, 2);
}

// Every notice gets an id of its own, an upper-case UUID, even one shown without any.
TEST_F(ActivityCenterTest, EveryNoticeGetsItsOwnId)
{
    const auto a = notice("same");
    const auto b = notice("same");
    EXPECT_NE(a.id, b.id);
    EXPECT_EQ(a.id.size(), 36u);
    EXPECT_EQ(QString::fromStdString(a.id), QString::fromStdString(a.id).toUpper());
    center.showToast(Toast{"", "bell", "No id", "", std::nullopt}, 2);
    ASSERT_TRUE(center.toast());
    EXPECT_FALSE(center.toast()->id.empty());
}

TEST_F(ActivityCenterTest, BadInputIsLoggedAndMadeHarmless)
{
    CapturingLogSink log;
    center.showToast(notice("odd"), -1);
    clock.runDue();
    EXPECT_EQ(center.toast(), std::nullopt);
    EXPECT_TRUE(log.contains("Navro: toast \"odd\""));

    center.setPlaybackRate(std::numeric_limits<double>::quiet_NaN());
    clock.runDue();
    EXPECT_EQ(center.current(), std::nullopt);
    EXPECT_TRUE(log.contains("playback rate"));
}

TEST_F(ActivityCenterTest, QmlSeesTheKindAndThePayload)
{
    auto shown = ActivityCenter::makeToast("bolt.fill", "Charging", "80%", 0x34c759);
    center.showToast(shown, 5);
    clock.runDue();
    const QVariantMap map = center.currentMap();
    EXPECT_EQ(map.value("kind").toString(), "toast");
    EXPECT_EQ(map.value("title").toString(), "Charging");
    EXPECT_EQ(map.value("tint").toString(), "#34c759");
    EXPECT_EQ(center.toastMap().value("detail").toString(), "80%");

    clock.advance(5s);
    EXPECT_EQ(center.currentMap().value("kind").toString(), "");
    EXPECT_TRUE(center.toastMap().isEmpty());
}

} // namespace
} // namespace navro
