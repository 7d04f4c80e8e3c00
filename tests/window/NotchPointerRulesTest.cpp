#include "notch/NotchPointerRules.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace navro {
namespace {

// Records what the rules ask for, as words, and answers from plain fields.
class RecordingHost final : public NotchPointerRules::Host {
public:
    bool isOpen() const override { return open_; }
    bool openedByHover() const override { return byHover_; }
    bool hoverOpens() const override { return hoverMode; }
    bool pointerInOpenHotZone() const override { return pointerInZone; }

    void scheduleOpen() override { calls.push_back("scheduleOpen"); }
    void scheduleClose() override { calls.push_back("scheduleClose"); }
    void cancelScheduled() override { calls.push_back("cancel"); }
    void open(bool byHover, bool focus) override
    {
        calls.push_back(std::string("open") + (byHover ? " hover" : "") + (focus ? " focus" : ""));
    }
    void close() override { calls.push_back("close"); }
    void activateWindow() override { calls.push_back("activate"); }
    void releaseFocus() override { calls.push_back("release"); }
    void setTracking(bool on) override
    {
        tracking = on;
        calls.push_back(on ? "track" : "untrack");
    }
    void setWatchingPresses(bool on) override { calls.push_back(on ? "watch" : "unwatch"); }

    void setOpen(bool byHover)
    {
        open_ = true;
        byHover_ = byHover;
    }

    bool hoverMode = true;
    bool pointerInZone = false;
    bool tracking = false;
    std::vector<std::string> calls;

private:
    bool open_ = false;
    bool byHover_ = false;
};

using Calls = std::vector<std::string>;

class NotchPointerRulesTest : public ::testing::Test {
protected:
    RecordingHost host;
    NotchPointerRules rules{host};
};

TEST_F(NotchPointerRulesTest, InHoverModeThePointerOnTheClosedNotchSchedulesTheOpen)
{
    rules.pointerEntered();
    EXPECT_EQ(host.calls, (Calls{"untrack", "scheduleOpen"}));
}

TEST_F(NotchPointerRulesTest, InClickModeThePointerAloneNeverOpens)
{
    host.hoverMode = false;
    rules.pointerEntered();
    rules.pointerLeft();
    EXPECT_EQ(host.calls, (Calls{"untrack"}));
}

TEST_F(NotchPointerRulesTest, LeavingTheClosedNotchLeavesThePendingOpenToCheckTheHotZone)
{
    // The scheduled open looks at the pointer when it falls due; nothing to watch meanwhile.
    rules.pointerLeft();
    EXPECT_TRUE(host.calls.empty());
    EXPECT_FALSE(host.tracking);
}

TEST_F(NotchPointerRulesTest, AClickOnTheClosedNotchOpensAtOnceWithFocusInEitherMode)
{
    rules.pressed(false);
    host.hoverMode = false;
    rules.pressed(false);
    EXPECT_EQ(host.calls, (Calls{"open focus", "open focus"}));
}

TEST_F(NotchPointerRulesTest, AClickInsideAPanelOpenedWithoutFocusTakesFocus)
{
    host.setOpen(true);
    rules.pressed(false);
    rules.pressed(true);
    EXPECT_EQ(host.calls, (Calls{"activate"}));
}

TEST_F(NotchPointerRulesTest, LeavingTheOpenPanelBeyondItsHotZoneSchedulesTheClose)
{
    host.setOpen(true);
    host.pointerInZone = false;
    rules.pointerLeft();
    EXPECT_EQ(host.calls, (Calls{"scheduleClose"}));
}

TEST_F(NotchPointerRulesTest, LeavingIntoTheHotZoneTracksUntilThePointerIsOut)
{
    host.setOpen(true);
    host.pointerInZone = true;
    rules.pointerLeft();
    EXPECT_TRUE(host.tracking);
    rules.trackPointer();
    rules.trackPointer();
    EXPECT_EQ(host.calls, (Calls{"track"}));

    host.pointerInZone = false;
    rules.trackPointer();
    EXPECT_EQ(host.calls, (Calls{"track", "untrack", "scheduleClose"}));
    EXPECT_FALSE(host.tracking);
}

TEST_F(NotchPointerRulesTest, ComingBackOntoTheOpenPanelKeepsItOpen)
{
    host.setOpen(true);
    rules.pointerLeft();
    rules.pointerEntered();
    EXPECT_EQ(host.calls, (Calls{"scheduleClose", "untrack", "cancel"}));
}

TEST_F(NotchPointerRulesTest, InClickModeAPanelOpenedByClickIgnoresThePointerLeaving)
{
    host.hoverMode = false;
    host.setOpen(false);
    rules.pointerLeft();
    EXPECT_TRUE(host.calls.empty());
}

TEST_F(NotchPointerRulesTest, APanelOpenedByHoverClosesOnLeavingEvenInClickMode)
{
    host.hoverMode = false;
    host.setOpen(true);
    rules.pointerLeft();
    EXPECT_EQ(host.calls, (Calls{"scheduleClose"}));
}

TEST_F(NotchPointerRulesTest, TrackingStopsByItselfOnceTheNotchIsClosed)
{
    host.pointerInZone = true;
    rules.trackPointer();
    EXPECT_EQ(host.calls, (Calls{"untrack"}));
}

TEST_F(NotchPointerRulesTest, LosingFocusClosesTheOpenPanel)
{
    rules.windowDeactivated();
    EXPECT_TRUE(host.calls.empty());
    host.setOpen(false);
    rules.windowDeactivated();
    EXPECT_EQ(host.calls, (Calls{"close"}));
}

TEST_F(NotchPointerRulesTest, EscapeClosesOnlyAnOpenPanel)
{
    rules.escapePressed();
    EXPECT_TRUE(host.calls.empty());
    host.setOpen(false);
    rules.escapePressed();
    EXPECT_EQ(host.calls, (Calls{"close"}));
}

TEST_F(NotchPointerRulesTest, EveryStatusChangeCancelsBothPendingTasksAndTracking)
{
    rules.statusChanged(true, false);
    rules.statusChanged(false, false);
    EXPECT_EQ(host.calls,
              (Calls{"cancel", "untrack", "watch", "cancel", "untrack", "unwatch", "release"}));
}

TEST_F(NotchPointerRulesTest, OpeningWithFocusActivatesTheWindow)
{
    rules.statusChanged(true, true);
    EXPECT_EQ(host.calls, (Calls{"cancel", "untrack", "watch", "activate"}));
}

TEST_F(NotchPointerRulesTest, APressElsewhereClosesTheOpenPanelWhateverOpenedIt)
{
    rules.pressedElsewhere();
    EXPECT_TRUE(host.calls.empty());
    host.hoverMode = false;
    host.setOpen(false);
    rules.pressedElsewhere();
    EXPECT_EQ(host.calls, (Calls{"close"}));
}

} // namespace
} // namespace navro
