#pragma once

#include <functional>

namespace navro {

// What the menu-bar panel's buttons do; filled in by the application delegate.
struct MenuBarActions {
    std::function<void()> openNotch;
    std::function<void()> openSettings;
    std::function<void()> openAbout;
    std::function<void()> quit;
};

} // namespace navro
