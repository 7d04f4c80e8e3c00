#include "platform/linux/X11Windows.h"

#include <QGuiApplication>
#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace navro {

Display* qtDisplay()
{
    auto* x11 = qApp ? qApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->display() : nullptr;
}

Window activeWindow(Display* display)
{
    const Atom property = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long remaining = 0;
    unsigned char* data = nullptr;
    Window active = 0;
    if (XGetWindowProperty(display, DefaultRootWindow(display), property, 0, 1, False, XA_WINDOW,
                           &type, &format, &count, &remaining, &data) == Success &&
        data && type == XA_WINDOW && format == 32 && count == 1)
        active = static_cast<Window>(*reinterpret_cast<unsigned long*>(data));
    if (data)
        XFree(data);
    return active;
}

} // namespace navro
