#include "platform/linux/X11HotKey.h"

#include <QGuiApplication>
#include <QTimer>
#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <cstdlib>
#include <xcb/xcb.h>

namespace navro {
namespace {

KeySym keysymFor(Qt::Key key)
{
    // Qt's codes for letters and digits are their upper-case Latin-1 code points; X names the
    // key by its unshifted symbol, and both map to the same key code.
    if (key >= Qt::Key_A && key <= Qt::Key_Z) {
        return XK_a + (key - Qt::Key_A);
    }
    if (key >= Qt::Key_0 && key <= Qt::Key_9) {
        return XK_0 + (key - Qt::Key_0);
    }
    return NoSymbol;
}

std::uint16_t maskFor(Qt::KeyboardModifiers modifiers)
{
    std::uint16_t mask = 0;
    if (modifiers & Qt::ControlModifier) {
        mask |= XCB_MOD_MASK_CONTROL;
    }
    if (modifiers & Qt::AltModifier) {
        mask |= XCB_MOD_MASK_1;
    }
    if (modifiers & Qt::ShiftModifier) {
        mask |= XCB_MOD_MASK_SHIFT;
    }
    if (modifiers & Qt::MetaModifier) {
        mask |= XCB_MOD_MASK_4;
    }
    return mask;
}

// The modifier bit that Num Lock sets on this server (Mod2 almost everywhere, but the mapping is
// the server's to choose).
std::uint16_t numLockMask(Display* display)
{
    std::uint16_t mask = XCB_MOD_MASK_2;
    const KeyCode numLock = XKeysymToKeycode(display, XK_Num_Lock);
    XModifierKeymap* map = XGetModifierMapping(display);
    if (!map || numLock == 0) {
        if (map) {
            XFreeModifiermap(map);
        }
        return mask;
    }
    for (int modifier = 0; modifier < 8; ++modifier) {
        for (int i = 0; i < map->max_keypermod; ++i) {
            if (map->modifiermap[modifier * map->max_keypermod + i] == numLock) {
                mask = std::uint16_t(1u << modifier);
            }
        }
    }
    XFreeModifiermap(map);
    return mask;
}

} // namespace

X11HotKey::X11HotKey(Display* display, xcb_connection_t* connection, Qt::Key key,
                     Qt::KeyboardModifiers modifiers, std::function<void()> action)
    : connection_(connection), action_(std::move(action))
{
    const KeySym keysym = keysymFor(key);
    if (!display || !connection_ || keysym == NoSymbol) {
        return;
    }
    root_ = std::uint32_t(DefaultRootWindow(display));
    keycode_ = std::uint8_t(XKeysymToKeycode(display, keysym));
    modifiers_ = maskFor(modifiers);
    if (keycode_ == 0 || modifiers_ == 0) {
        return;
    }
    const std::uint16_t numLock = numLockMask(display);
    ignoredLocks_ = std::uint16_t(numLock | XCB_MOD_MASK_LOCK);

    // A grab matches the exact modifier state, so Num Lock and Caps Lock each need their own.
    const std::uint16_t variants[] = {0, numLock, XCB_MOD_MASK_LOCK,
                                      std::uint16_t(numLock | XCB_MOD_MASK_LOCK)};
    for (std::uint16_t locks : variants) {
        const std::uint16_t mask = std::uint16_t(modifiers_ | locks);
        // Checked, so that a BadAccess (another client owns the combination) comes back to us
        // instead of reaching Qt's error handler, which would print it.
        xcb_generic_error_t* error = xcb_request_check(
            connection_, xcb_grab_key_checked(connection_, 0, root_, mask, keycode_,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        if (error) {
            const bool taken = error->error_code == XCB_ACCESS;
            free(error);
            if (locks == 0) {
                // Without the plain combination the shortcut is not ours: give back the rest.
                takenByAnother_ = taken;
                ungrabAll();
                return;
            }
            continue;
        }
        grabbed_.push_back(mask);
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKey::~X11HotKey()
{
    // Qt closes its X connection with the application; the server then drops our grabs itself.
    if (!QCoreApplication::instance()) {
        return;
    }
    QCoreApplication::instance()->removeNativeEventFilter(this);
    ungrabAll();
}

void X11HotKey::ungrabAll()
{
    if (!connection_ || grabbed_.empty()) {
        grabbed_.clear();
        return;
    }
    for (std::uint16_t mask : grabbed_) {
        xcb_ungrab_key(connection_, keycode_, root_, mask);
    }
    grabbed_.clear();
    xcb_flush(connection_);
}

bool X11HotKey::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (grabbed_.empty() || eventType != QByteArrayLiteral("xcb_generic_event_t")) {
        return false;
    }
    auto* event = static_cast<xcb_generic_event_t*>(message);
    const std::uint8_t type = event->response_type & 0x7f;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) {
        return false;
    }
    // A release has the same layout as a press.
    auto* key = reinterpret_cast<xcb_key_press_event_t*>(event);
    if (key->event != root_ || key->detail != keycode_) {
        return false;
    }
    if (type == XCB_KEY_RELEASE) {
        // The grab holds the keyboard until the key comes up, so this release is ours to see.
        isDown_ = false;
        return false;
    }
    const std::uint16_t relevant =
        XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
    const std::uint16_t state = std::uint16_t(key->state & ~ignoredLocks_);
    if ((state & relevant) != modifiers_) {
        return false;
    }
    // A held key repeats as further presses with no release between them (Qt asks the server
    // for detectable auto-repeat); one press of the shortcut is one action, so a toggle held a
    // moment too long does not flicker the notch open and shut.
    if (isDown_) {
        return true;
    }
    isDown_ = true;
    // Run outside Qt's event dispatch, so the action may open windows or spin event loops.
    QTimer::singleShot(0, &guard_, [this] {
        if (action_) {
            action_();
        }
    });
    return true;
}

HotKeyGrab makeHotKey(Qt::Key key, Qt::KeyboardModifiers modifiers, std::function<void()> action)
{
    auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (!application) {
        return {};
    }
    auto* x11 = application->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->display() || !x11->connection()) {
        return {};
    }
    auto hotKey = std::make_unique<X11HotKey>(x11->display(), x11->connection(), key, modifiers,
                                              std::move(action));
    if (!hotKey->isRegistered()) {
        return {nullptr, hotKey->isTakenByAnother()};
    }
    return {std::move(hotKey), false};
}

} // namespace navro
