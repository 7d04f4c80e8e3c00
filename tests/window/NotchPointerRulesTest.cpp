#include "notch/NotchPointerRules.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
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

// Plays a space-separated list of events on the rules.
void play(NotchPointerRules& rules, const std::string& events)
{
    const std::map<std::string, std::function<void()>> named{
        {"enter", [&] { rules.pointerEntered(); }},
        {"leave", [&] { rules.pointerLeft(); }},
        {"press", [&] { rules.pressed(false); }},
        {"pressInside", [&] { rules.pressed(true); }},
        {"track", [&] { rules.trackPointer(); }},
        {"deactivate", [&] { rules.windowDeactivated(); }},
        {"escape", [&] { rules.escapePressed(); }},
        {"pressElsewhere", [&] { rules.pressedElsewhere(); }},
        {"opened", [&] { rules.statusChanged(true, false); }},
        {"openedWithFocus", [&] { rules.statusChanged(true, true); }},
        {"closed", [&] { rules.statusChanged(false, false); }},
    };
    std::istringstream words(events);
    for (std::string word; words >> word;)
        named.at(word)();
}

// A situation (the open mode, how the panel was opened, where the pointer is), the events that
// happen in it, and everything the rules ask for in answer.
struct Case {
    bool clickMode;
    std::optional<bool> openedByHover; // none: closed
    const char* events;
    Calls expected;
};

TEST(NotchPointerRulesTest, AnswersEachSituationWithExactlyTheseCalls)
{
    const std::optional<bool> closed, byHover = true, byClick = false;
    const std::vector<Case> cases{
        // Hover mode: the pointer on the closed notch schedules the open; leaving the closed
        // notch leaves the pending open to check the hot zone when it falls due.
        {false, closed, "enter", {"untrack", "scheduleOpen"}},
        {false, closed, "leave", {}},
        // Click mode: the pointer alone never opens; a click opens at once with focus.
        {true, closed, "enter leave", {"untrack"}},
        {true, closed, "press", {"open focus"}},
        {false, closed, "press", {"open focus"}},
        // A click inside a panel opened without focus takes focus.
        {false, byHover, "press pressInside", {"activate"}},
        // Leaving the open panel beyond its hot zone schedules the close, coming back cancels it.
        {false, byHover, "leave", {"scheduleClose"}},
        {false, byHover, "leave enter", {"scheduleClose", "untrack", "cancel"}},
        // In click mode only a panel opened by hover closes on leaving.
        {true, byClick, "leave", {}},
        {true, byHover, "leave", {"scheduleClose"}},
        // Losing focus, Escape and a press elsewhere close an open panel, whatever opened it.
        {false, closed, "deactivate escape pressElsewhere", {}},
        {false, byClick, "deactivate", {"close"}},
        {false, byClick, "escape", {"close"}},
        {true, byClick, "pressElsewhere", {"close"}},
        // Every status change cancels both pending tasks and tracking.
        {false,
         closed,
         "opened closed",
         {"cancel", "untrack", "watch", "cancel", "untrack", "unwatch", "release"}},
        {false, closed, "openedWithFocus", {"cancel", "untrack", "watch", "activate"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.clickMode ? "click mode, " : "hover mode, ") +
                     (!c.openedByHover   ? "closed"
                      : *c.openedByHover ? "by hover"
                                         : "by click") +
                     ": " + c.events);
        RecordingHost host;
        host.hoverMode = !c.clickMode;
        if (c.openedByHover)
            host.setOpen(*c.openedByHover);
        NotchPointerRules rules{host};
        play(rules, c.events);
        EXPECT_EQ(host.calls, c.expected);
    }
}

TEST(NotchPointerRulesTest, LeavingIntoTheHotZoneTracksUntilThePointerIsOut)
{
    RecordingHost closedHost;
    closedHost.pointerInZone = true;
    NotchPointerRules closedRules{closedHost};
    closedRules.trackPointer();
    EXPECT_EQ(closedHost.calls, (Calls{"untrack"})) << "tracking stops once the notch is closed";

    RecordingHost host;
    NotchPointerRules rules{host};
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

} // namespace
} // namespace navro
