#include "platform/linux/X11FrontmostApplication.h"

#include "platform/linux/X11Windows.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace navro {

std::optional<QString> X11FrontmostApplication::displayName(bool arabic)
{
    Display* display = qtDisplay();
    const Window window = display ? activeWindow(display) : 0;
    XClassHint hint{};
    // A window that is gone by now answers with an error, which Qt's handler swallows.
    if (window == 0 || !XGetClassHint(display, window, &hint))
        return std::nullopt;
    const QString instance = QString::fromLocal8Bit(hint.res_name ? hint.res_name : "");
    const QString className = QString::fromLocal8Bit(hint.res_class ? hint.res_class : "");
    if (hint.res_name)
        XFree(hint.res_name);
    if (hint.res_class)
        XFree(hint.res_class);
    const auto entry = entries_.byWindowClass(instance, className);
    if (!entry)
        return std::nullopt;
    return entry->displayName(arabic);
}

std::unique_ptr<FrontmostApplication> makeFrontmostApplication()
{
    return std::make_unique<X11FrontmostApplication>();
}

} // namespace navro
