#include "notch/NotchTab.h"

#include "app/RawValue.h"

#include <algorithm>

namespace navro {

std::string_view rawValue(NotchTab tab)
{
    switch (tab) {
    case NotchTab::home:
        return "home";
    case NotchTab::nowPlaying:
        return "nowPlaying";
    case NotchTab::calendar:
        return "calendar";
    case NotchTab::timer:
        return "timer";
    case NotchTab::notes:
        return "notes";
    case NotchTab::clipboard:
        return "clipboard";
    case NotchTab::capture:
        return "capture";
    case NotchTab::shelf:
        return "shelf";
    case NotchTab::devices:
        return "devices";
    case NotchTab::prayer:
        return "prayer";
    }
    return "home";
}

BilingualText title(NotchTab tab)
{
    switch (tab) {
    case NotchTab::home:
        return {"Home", "الرئيسية"};
    case NotchTab::nowPlaying:
        return {"Music", "الموسيقى"};
    case NotchTab::calendar:
        return {"Calendar", "التقويم"};
    case NotchTab::timer:
        return {"Timer", "المؤقت"};
    case NotchTab::notes:
        return {"Notes", "الملاحظات"};
    case NotchTab::clipboard:
        return {"Clipboard", "الحافظة"};
    case NotchTab::capture:
        return {"Capture", "التقاط"};
    case NotchTab::shelf:
        return {"Shelf", "الرف"};
    case NotchTab::devices:
        return {"Devices", "الأجهزة"};
    case NotchTab::prayer:
        return {"Prayer", "الصلاة"};
    }
    return {"Home", "الرئيسية"};
}

std::string_view symbol(NotchTab tab)
{
    switch (tab) {
    case NotchTab::home:
        return "house";
    case NotchTab::nowPlaying:
        return "music.note";
    case NotchTab::calendar:
        return "calendar";
    case NotchTab::timer:
        return "timer";
    case NotchTab::notes:
        return "checklist";
    case NotchTab::clipboard:
        return "doc.on.clipboard";
    case NotchTab::capture:
        return "camera.viewfinder";
    case NotchTab::shelf:
        return "tray";
    case NotchTab::devices:
        return "battery.75percent";
    case NotchTab::prayer:
        return "moon.stars";
    }
    return "house";
}

std::optional<NotchTab> notchTabFromRaw(std::string_view raw)
{
    return fromRaw(allNotchTabs, raw);
}

std::vector<NotchTab> visibleTabs()
{
    // The prayer tab is reached from the prayer activity, never from the bar.
    std::vector<NotchTab> tabs;
    std::copy_if(allNotchTabs.begin(), allNotchTabs.end(), std::back_inserter(tabs),
                 [](NotchTab tab) { return tab != NotchTab::prayer; });
    return tabs;
}

NotchTab tabBarNeighbour(NotchTab from, int steps)
{
    const std::vector<NotchTab> bar = visibleTabs();
    const auto at = std::find(bar.begin(), bar.end(), from);
    if (at == bar.end())
        return steps >= 0 ? bar.front() : bar.back();
    if (steps == 0)
        return from;
    // The bar's ends are where it stops: going round from the last tab to the first would look
    // like a jump across the whole panel.
    const auto last = static_cast<std::ptrdiff_t>(bar.size()) - 1;
    const std::ptrdiff_t index = std::clamp<std::ptrdiff_t>((at - bar.begin()) + steps, 0, last);
    return bar[static_cast<std::size_t>(index)];
}

} // namespace navro
