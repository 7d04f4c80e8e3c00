#include "platform/linux/X11PanelWindow.h"

#include "platform/linux/X11Windows.h"

#include <QGuiApplication>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/shape.h>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>
#include <xcb/xcb.h>

namespace navro {

X11PanelWindow::X11PanelWindow()
{
    if (Display* display = qtDisplay()) {
        int eventBase = 0;
        int errorBase = 0;
        int major = 0;
        int minor = 0;
        // Input shapes arrived with version 1.1 of the extension.
        canShape_ = XShapeQueryExtension(display, &eventBase, &errorBase) &&
                    XShapeQueryVersion(display, &major, &minor) &&
                    (major > 1 || (major == 1 && minor >= 1));

        // Raw events reach root-window listeners whatever grabs are active from version 2.1.
        // The server keeps one version per client and refuses a lower one than asked before,
        // and Qt, on the same connection, has already asked for its own: asking for the highest
        // this header knows gets the version in force back.
        int opcode = 0;
        int inputMajor = XI_2_Major;
        int inputMinor = XI_2_Minor;
        if (XQueryExtension(display, "XInputExtension", &opcode, &eventBase, &errorBase) &&
            XIQueryVersion(display, &inputMajor, &inputMinor) == Success &&
            (inputMajor > 2 || (inputMajor == 2 && inputMinor >= 1)))
            inputOpcode_ = opcode;
    }
}

X11PanelWindow::~X11PanelWindow()
{
    if (pressed_)
        selectRawPresses(false);
    if (filterInstalled_ && qApp)
        qApp->removeNativeEventFilter(this);
}

void X11PanelWindow::setInputRegion(QWindow& window, const QRegion& region)
{
    Display* display = qtDisplay();
    if (!canShape_ || !display)
        return;
    const qreal ratio = window.devicePixelRatio();
    std::vector<XRectangle> rectangles;
    rectangles.reserve(static_cast<std::size_t>(region.rectCount()));
    for (const QRect& rect : region) {
        // Rounded outwards so that a fractional scale never leaves a one-pixel dead edge.
        const int left = static_cast<int>(std::floor(rect.x() * ratio));
        const int top = static_cast<int>(std::floor(rect.y() * ratio));
        const int right = static_cast<int>(std::ceil((rect.x() + rect.width()) * ratio));
        const int bottom = static_cast<int>(std::ceil((rect.y() + rect.height()) * ratio));
        rectangles.push_back({static_cast<short>(left), static_cast<short>(top),
                              static_cast<unsigned short>(right - left),
                              static_cast<unsigned short>(bottom - top)});
    }
    // An empty list is a valid shape: the window then takes no pointer input at all.
    XShapeCombineRectangles(display, static_cast<Window>(window.winId()), ShapeInput, 0, 0,
                            rectangles.data(), static_cast<int>(rectangles.size()), ShapeSet,
                            Unsorted);
    XFlush(display);
}

void X11PanelWindow::rememberFocus(QWindow& panel)
{
    Display* display = qtDisplay();
    if (!display)
        return;
    const Window active = activeWindow(display);
    if (active != static_cast<Window>(panel.winId()))
        previousActive_ = active;
}

void X11PanelWindow::takeFocus(QWindow& panel)
{
    Display* display = qtDisplay();
    if (!display) {
        panel.requestActivate();
        return;
    }
    // Qt would stamp the request with the time of the last event it saw, and the server ignores
    // a focus change older than the latest one: after the tray panel hid (the window manager
    // moved focus on) or after the key that opened the notch went to our grab rather than to Qt,
    // the notch would be left without the keyboard. The user has just asked for it, so now is the
    // right time.
    XSetInputFocus(display, static_cast<Window>(panel.winId()), RevertToParent, CurrentTime);
    XFlush(display);
}

void X11PanelWindow::returnFocus(QWindow& panel)
{
    Display* display = qtDisplay();
    if (!display)
        return;
    const Window previous = previousActive_;
    previousActive_ = 0;
    if (previous == 0 || previous == static_cast<Window>(panel.winId())) {
        // Nobody to hand it to: let keyboard focus follow the pointer rather than stay with a
        // closed notch.
        XSetInputFocus(display, PointerRoot, RevertToPointerRoot, CurrentTime);
        XFlush(display);
        return;
    }
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = previous;
    event.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
    event.xclient.format = 32;
    // Source 2: a pager, i.e. the user's own choice, which managers honour without focus-stealing
    // prevention.
    event.xclient.data.l[0] = 2;
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, DefaultRootWindow(display), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
    XFlush(display);
}

bool X11PanelWindow::watchPresses(std::function<void()> pressed)
{
    if (inputOpcode_ < 0 || !qtDisplay())
        return false;
    const bool wasWatching = static_cast<bool>(pressed_);
    pressed_ = std::move(pressed);
    ++watch_;
    if (pressed_ && !filterInstalled_) {
        qApp->installNativeEventFilter(this);
        filterInstalled_ = true;
    }
    if (static_cast<bool>(pressed_) != wasWatching)
        selectRawPresses(static_cast<bool>(pressed_));
    return true;
}

void X11PanelWindow::selectRawPresses(bool on)
{
    Display* display = qtDisplay();
    if (!display)
        return;
    unsigned char bits[XIMaskLen(XI_LASTEVENT)] = {};
    if (on)
        XISetMask(bits, XI_RawButtonPress);
    XIEventMask mask;
    // Master devices only: Qt keeps its own selection on the root for all devices, and a
    // selection replaces the earlier one of the same client, window and device.
    mask.deviceid = XIAllMasterDevices;
    mask.mask_len = on ? static_cast<int>(sizeof bits) : 0;
    mask.mask = bits;
    XISelectEvents(display, DefaultRootWindow(display), &mask, 1);
    XFlush(display);
}

bool X11PanelWindow::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (!pressed_ || eventType != "xcb_generic_event_t")
        return false;
    auto* event = static_cast<xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_GE_GENERIC)
        return false;
    auto* generic = reinterpret_cast<xcb_ge_generic_event_t*>(event);
    if (generic->extension != inputOpcode_ || generic->event_type != XI_RawButtonPress)
        return false;
    // The button number follows the event type, device id and time. Wheel "buttons" (4 to 7)
    // scroll; they are not clicks.
    std::uint32_t button = 0;
    std::memcpy(&button, reinterpret_cast<const char*>(event) + 16, sizeof button);
    if (button >= 4 && button <= 7)
        return false;
    // Not from inside Qt's event dispatch: the answer may close windows.
    // A press made while an earlier watch ran is not this watch's business.
    QTimer::singleShot(0, &guard_, [this, watch = watch_] {
        if (pressed_ && watch == watch_)
            pressed_();
    });
    return false;
}

std::unique_ptr<PanelWindowSystem> makePanelWindowSystem()
{
    return std::make_unique<X11PanelWindow>();
}

} // namespace navro
