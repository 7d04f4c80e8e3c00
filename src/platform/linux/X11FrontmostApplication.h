#pragma once

#include "data/FrontmostApplication.h"
#include "platform/linux/DesktopEntries.h"

namespace navro {

// The window manager's active window (_NET_ACTIVE_WINDOW), matched by its WM_CLASS to an
// installed application's desktop entry, whose Name it answers with.
class X11FrontmostApplication final : public FrontmostApplication {
public:
    std::optional<QString> displayName(bool arabic) override;

private:
    DesktopEntries entries_;
};

} // namespace navro
