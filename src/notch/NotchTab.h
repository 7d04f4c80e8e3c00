#pragma once

#include "app/BilingualText.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace navro {

// The tabs of the open notch; the raw value (the case name) is also the tab's identifier.
enum class NotchTab {
    home,
    nowPlaying,
    calendar,
    timer,
    notes,
    clipboard,
    capture,
    shelf,
    devices,
    prayer
};

inline constexpr std::array allNotchTabs{
    NotchTab::home,    NotchTab::nowPlaying, NotchTab::calendar, NotchTab::timer,
    NotchTab::notes,   NotchTab::clipboard,  NotchTab::capture,  NotchTab::shelf,
    NotchTab::devices, NotchTab::prayer};

std::string_view rawValue(NotchTab tab);
BilingualText title(NotchTab tab);
// The symbol's name in the app's icon set (SF-symbol-style names).
std::string_view symbol(NotchTab tab);
std::optional<NotchTab> notchTabFromRaw(std::string_view raw);

// The tab bar: every tab in order except prayer, whatever the settings.
std::vector<NotchTab> visibleTabs();

// The tab `steps` places after `from` in the tab bar (before it when negative), stopping at the
// bar's ends. From a tab the bar does not show, a step forward lands on the first tab and a step
// back on the last.
NotchTab tabBarNeighbour(NotchTab from, int steps);

} // namespace navro
