#include "notch/NotchViewModel.h"

#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "notch/ActivityCenter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace navro {
namespace {

using namespace std::chrono_literals;

class FakePointer final : public NotchPointerQuery {
public:
    std::optional<QPoint> pointerPosition() const override { return position; }
    QRect hotZone() const override { return zone; }

    std::optional<QPoint> position = QPoint(960, 10);
    QRect zone{845, 0, 230, 44};
};

struct StatusCall {
    NotchStatus status;
    bool focus;
    bool operator==(const StatusCall&) const = default;
};

class NotchViewModelTest : public ::testing::Test {
protected:
    NotchViewModelTest()
    {
        model.setGeometry(NotchGeometry{"DP-1", 0, 0, 1920, 1080, false, {190, 32}});
        model.setPointerQuery(&pointer);
        model.onStatusChange = [this](NotchStatus status, bool focus) {
            calls.push_back({status, focus});
        };
    }

    Meeting meeting() const
    {
        return Meeting{"E1", "1:1", clock.now() + 1min, clock.now() + 31min, false, "Work", {},
                       {},   {}};
    }

    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    NotchViewModel model{clock, settings};
    FakePointer pointer;
    std::vector<StatusCall> calls;
};

TEST_F(NotchViewModelTest, OpeningLandsOnTheTabOfTheActivityShown)
{
    const std::vector<std::pair<std::optional<ClosedActivity>, NotchTab>> cases{
        {ClosedActivity::ofMeeting(meeting()), NotchTab::calendar},
        {ClosedActivity::recording(), NotchTab::capture},
        {ClosedActivity::timer(), NotchTab::timer},
        {ClosedActivity::music(), NotchTab::notes},
        {ClosedActivity::transfer(), NotchTab::notes},
        {ClosedActivity::ofToast(ActivityCenter::makeToast("bell", "Hi", "")), NotchTab::notes},
        {ClosedActivity::prayerNow(Prayer::fajr), NotchTab::notes},
        {std::nullopt, NotchTab::notes},
    };
    for (const auto& [activity, expected] : cases) {
        model.close();
        model.setSelectedTab(NotchTab::notes);
        model.setActivity(activity);
        model.open(false, true);
        EXPECT_EQ(model.selectedTab(), expected)
            << (activity ? rawValue(activity->kind()) : "none");
    }
}

// Only a real change is reported, with the focus asked for by the open; a close never asks for it.
TEST_F(NotchViewModelTest, StatusChangesAreReportedOnceAndOpeningTwiceKeepsTheFirstOpen)
{
    int statusSignals = 0;
    QObject::connect(&model, &NotchViewModel::statusChanged, [&] { ++statusSignals; });
    model.close();
    EXPECT_TRUE(calls.empty());

    model.open(true, false);
    model.setActivity(ClosedActivity::timer());
    model.open(false, true);
    EXPECT_TRUE(model.openedByHover());
    EXPECT_EQ(model.selectedTab(), NotchTab::home) << "the second open chose no tab";
    model.close();
    model.close();
    EXPECT_FALSE(model.isOpen());
    model.open(false, true);
    EXPECT_EQ(calls, (std::vector<StatusCall>{{NotchStatus::open, false},
                                              {NotchStatus::closed, false},
                                              {NotchStatus::open, true}}));
    EXPECT_EQ(statusSignals, 3);
}

TEST_F(NotchViewModelTest, OpeningClearsTheHoverFeedbackButKeepsTheDropTarget)
{
    model.setHovering(true);
    model.setDropTargeted(true);
    model.open(true, false);
    EXPECT_FALSE(model.isHovering());
    EXPECT_TRUE(model.isDropTargeted());
}

// The open view exists from the first hover or opening until the notch has rested closed, with
// no pointer on it, for a whole openViewRest.
TEST_F(NotchViewModelTest, TheOpenViewIsLetGoOnlyAfterAFullRestClosed)
{
    int changes = 0;
    QObject::connect(&model, &NotchViewModel::openViewWantedChanged, [&] { ++changes; });
    EXPECT_FALSE(model.openViewWanted());
    clock.advance(NotchViewModel::openViewRest * 2);
    EXPECT_FALSE(model.openViewWanted()) << "never wanted, never built";

    // A hover that does not open still builds it, and the rest starts when the pointer leaves.
    model.setHovering(true);
    EXPECT_TRUE(model.openViewWanted());
    clock.advance(NotchViewModel::openViewRest * 2);
    EXPECT_TRUE(model.openViewWanted()) << "the pointer is still on the notch";
    model.setHovering(false);
    clock.advance(NotchViewModel::openViewRest - 1s);
    model.setHovering(true); // back in time: the rest starts again
    model.setHovering(false);
    clock.advance(NotchViewModel::openViewRest - 1s);
    EXPECT_TRUE(model.openViewWanted());
    clock.advance(1s);
    EXPECT_FALSE(model.openViewWanted());
    EXPECT_EQ(changes, 2);

    // Open for long, then closed: let go a rest after closing, not after opening.
    model.open(false, true);
    EXPECT_TRUE(model.openViewWanted());
    clock.advance(NotchViewModel::openViewRest * 3);
    EXPECT_TRUE(model.openViewWanted());
    model.close();
    clock.advance(NotchViewModel::openViewRest - 1s);
    model.open(true, false); // reopened within the rest: nothing was rebuilt
    model.close();
    clock.advance(NotchViewModel::openViewRest - 1s);
    EXPECT_TRUE(model.openViewWanted());
    EXPECT_EQ(changes, 3);
    clock.advance(1s);
    EXPECT_FALSE(model.openViewWanted());
    EXPECT_EQ(changes, 4);
}

TEST_F(NotchViewModelTest, ThePrayerTabIsNeverInTheTabBar)
{
    const auto tabs = visibleTabs();
    EXPECT_EQ(tabs.size(), allNotchTabs.size() - 1);
    EXPECT_EQ(std::find(tabs.begin(), tabs.end(), NotchTab::prayer), tabs.end());

    settings.setPrayerInNotch(false);
    QStringList ids;
    for (const auto& tab : model.visibleTabList())
        ids << tab.toMap().value("id").toString();
    EXPECT_FALSE(ids.contains("prayer"));
    EXPECT_EQ(ids.size(), qsizetype(tabs.size()));
}

TEST_F(NotchViewModelTest, StepsAlongTheTabBarStopAtItsEnds)
{
    struct Case {
        NotchTab from;
        int steps;
        NotchTab to;
    };
    const std::vector<Case> cases{
        {NotchTab::home, 1, NotchTab::nowPlaying},
        {NotchTab::nowPlaying, -1, NotchTab::home},
        {NotchTab::clipboard, 2, NotchTab::shelf},
        {NotchTab::home, -1, NotchTab::home},
        {NotchTab::devices, 1, NotchTab::devices},
        {NotchTab::shelf, 5, NotchTab::devices},
        {NotchTab::timer, 0, NotchTab::timer},
        // Prayer is not in the bar: the arrows lead into it from its ends.
        {NotchTab::prayer, 1, NotchTab::home},
        {NotchTab::prayer, -1, NotchTab::devices},
    };
    for (const Case& c : cases) {
        model.setSelectedTab(c.from);
        model.selectNeighbourTab(c.steps);
        EXPECT_EQ(model.selectedTab(), c.to) << rawValue(c.from) << " stepped " << c.steps
                                             << " landed on " << rawValue(model.selectedTab());
    }
}

// The delay is read from the settings when the open is scheduled and bounded there: a value out
// of range waits the nearer end of it, one that is no number the default 0.15 s, each with a log
// line.
TEST_F(NotchViewModelTest, AScheduledOpenWaitsTheHoverDelay)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (auto [setting, expected] : {std::pair{0.15, 150ms},
                                     {0.5, 500ms},
                                     {10.0, 10s},
                                     {1e308, 10s},
                                     {nan, 150ms},
                                     {-3.0, 0ms}}) {
        SCOPED_TRACE(setting);
        CapturingLogSink log;
        model.close();
        calls.clear();
        settings.setHoverDelay(setting);
        model.scheduleOpen();
        if (expected > 0ms) {
            clock.advance(expected - 1ms);
            EXPECT_FALSE(model.isOpen());
        }
        clock.advance(expected > 0ms ? 1ms : 0ms);
        EXPECT_TRUE(model.isOpen());
        EXPECT_TRUE(model.openedByHover());
        EXPECT_EQ(calls, (std::vector<StatusCall>{{NotchStatus::open, false}}));
        const bool outside = std::isnan(setting) || setting < 0 || setting > 10;
        EXPECT_EQ(log.contains("setting \"hoverDelay\""), outside);
    }
}

// The pointer must still be in the hot zone when the delay ends; where it cannot be told, or
// there is no one to ask, the hover open is skipped (the latter with a log line).
TEST_F(NotchViewModelTest, APointerThatLeavesTheHotZoneBeforeTheDelayNeverOpens)
{
    CapturingLogSink log;
    model.scheduleOpen();
    clock.advance(100ms);
    pointer.position = QPoint(600, 300);
    clock.advance(1s);
    EXPECT_FALSE(model.isOpen());
    EXPECT_FALSE(model.isOpenScheduled());

    pointer.position.reset(); // position unreadable
    model.scheduleOpen();
    clock.advance(1s);
    EXPECT_FALSE(model.isOpen());
    EXPECT_TRUE(log.lines.empty());

    pointer.position = QPoint(960, 10);
    model.setPointerQuery(nullptr);
    model.scheduleOpen();
    clock.advance(1s);
    EXPECT_FALSE(model.isOpen());
    EXPECT_TRUE(log.contains("Navro: a hover open"));
}

// A new schedule replaces the pending one; cancelling or a change of status drops it.
TEST_F(NotchViewModelTest, OnlyTheLastScheduledOpenOrCloseIsPending)
{
    model.scheduleOpen();
    clock.advance(100ms);
    model.scheduleOpen();
    clock.advance(149ms);
    EXPECT_FALSE(model.isOpen());
    clock.advance(1ms);
    EXPECT_TRUE(model.isOpen());

    model.scheduleClose();
    clock.advance(200ms);
    model.scheduleClose();
    clock.advance(249ms);
    EXPECT_TRUE(model.isOpen());
    model.cancelScheduled();
    clock.advance(1s);
    EXPECT_TRUE(model.isOpen());
    model.scheduleClose();
    clock.advance(250ms);
    EXPECT_FALSE(model.isOpen());

    model.scheduleOpen();
    model.open(false, true); // the hot key wins over the hover in progress
    model.scheduleClose();
    model.close();
    EXPECT_FALSE(model.isOpenScheduled());
    EXPECT_FALSE(model.isCloseScheduled());
}

TEST_F(NotchViewModelTest, TheClosedNotchWidensAroundItsCentreForAnActivityOrADrop)
{
    int sizeSignals = 0;
    QObject::connect(&model, &NotchViewModel::closedSizeChanged, [&] { ++sizeSignals; });
    const QRect resting(865, 0, 190, 32);
    EXPECT_EQ(model.closedRect(), resting);
    const auto toast = ClosedActivity::ofToast(ActivityCenter::makeToast("bell", "Hi", ""));

    model.setActivity(ClosedActivity::music());
    EXPECT_GT(model.closedWidth(), 190);
    EXPECT_EQ(model.closedRect().center().x(), resting.center().x());
    const int musicWidth = model.closedWidth();
    model.setActivity(toast);
    EXPECT_GT(model.closedWidth(), musicWidth) << "text needs more room than bars";
    model.setActivity(std::nullopt);
    EXPECT_EQ(model.closedWidth(), 190);
    EXPECT_EQ(sizeSignals, 3);

    // A file dragged over it: an activity wider than the drop target keeps its width, a
    // narrower one gets the target's.
    model.setDropTargeted(true);
    EXPECT_GT(model.closedWidth(), 190);
    EXPECT_EQ(model.closedRect().center().x(), resting.center().x());
    EXPECT_EQ(sizeSignals, 4);
    const int dropWidth = model.closedWidth();
    model.setActivity(toast);
    EXPECT_GT(model.closedWidth(), dropWidth);
    model.setActivity(ClosedActivity::recording());
    EXPECT_EQ(model.closedWidth(), dropWidth);
    model.setDropTargeted(false);
    EXPECT_LT(model.closedWidth(), dropWidth);
    model.setActivity(std::nullopt);
    EXPECT_EQ(model.closedWidth(), 190);

    const int signalsBefore = sizeSignals;
    model.setGeometry(NotchGeometry{"HDMI-1", 1920, 0, 2560, 1440, false, {190, 32}});
    EXPECT_EQ(model.closedRect(), QRect(1920 + 1185, 0, 190, 32));
    EXPECT_EQ(sizeSignals, signalsBefore + 1) << "the same size on another screen moves the notch";
}

TEST_F(NotchViewModelTest, TheOpenNotchHangsCentredFromTheTopOfTheScreen)
{
    model.setGeometry(NotchGeometry{"HDMI-1", 1920, 0, 2560, 1440, false, {190, 24}});
    EXPECT_EQ(model.openRect(), QRect(1920 + 936, 0, 688, 260));
    model.open(false, false);
    EXPECT_TRUE(model.hotZoneRect().contains(QPoint(1920 + 936 - 20, 279)));
    EXPECT_FALSE(model.hotZoneRect().contains(QPoint(1920 + 936 - 21, 100)));
    EXPECT_FALSE(model.hotZoneRect().contains(QPoint(1920 + 1300, 280)));
}

TEST_F(NotchViewModelTest, MirrorsTheActivityCentre)
{
    ActivityCenter center(clock, settings);
    model.mirror(center);
    center.setRecording(true);
    clock.runDue();
    ASSERT_TRUE(model.activity());
    EXPECT_EQ(model.activity()->kind(), ClosedActivity::Kind::recording);
    EXPECT_EQ(model.activityMap().value("kind").toString(), "recording");
}

// The prayer tab is never in the tab bar, yet the open panel must still title it.
TEST_F(NotchViewModelTest, QmlSelectsTabsByRawValueAndReadsTheirTitles)
{
    CapturingLogSink log;
    model.setSelectedTabRaw("clipboard");
    EXPECT_EQ(model.selectedTab(), NotchTab::clipboard);
    model.setSelectedTabRaw("Clipboard");
    EXPECT_EQ(model.selectedTabRaw(), "clipboard");
    EXPECT_TRUE(log.contains("\"Clipboard\""));

    model.setSelectedTab(NotchTab::prayer);
    EXPECT_EQ(model.selectedTabInfo().value("titleArabic").toString(), "الصلاة");
    model.setActivity(ClosedActivity::prayerNow(Prayer::isha));
    const QVariantMap activity = model.activityMap();
    EXPECT_EQ(activity.value("prayer").toString(), "isha");
    EXPECT_EQ(activity.value("titleEnglish").toString(), "Isha");
    EXPECT_EQ(activity.value("titleArabic").toString(), "العشاء");
}

} // namespace
} // namespace navro
