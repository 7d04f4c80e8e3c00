#pragma once

#include "app/HotKey.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <cstdint>
#include <vector>

struct _XDisplay;
struct xcb_connection_t;

namespace navro {

// A passive key grab on the root window of an X display. The press reaches us through Qt's xcb
// event stream, so the grab must be made on Qt's own connection.
// Grabs belong to the connection, not to this object: two hot keys for the same combination in
// one process share one grab, and destroying either releases it.
class X11HotKey final : public HotKey, private QAbstractNativeEventFilter {
public:
    // Grabs on Qt's display (the Xlib handle is for key-map look-ups, the xcb one for requests).
    // isRegistered() tells whether it worked.
    X11HotKey(_XDisplay* display, xcb_connection_t* connection, Qt::Key key,
              Qt::KeyboardModifiers modifiers, std::function<void()> action);
    ~X11HotKey() override;
    X11HotKey(const X11HotKey&) = delete;
    X11HotKey& operator=(const X11HotKey&) = delete;

    bool isRegistered() const { return !grabbed_.empty(); }
    // The combination could not be had because another client holds it.
    bool isTakenByAnother() const { return takenByAnother_; }

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void ungrabAll();

    xcb_connection_t* connection_ = nullptr;
    std::uint32_t root_ = 0;
    std::uint8_t keycode_ = 0;
    std::uint16_t modifiers_ = 0;
    std::uint16_t ignoredLocks_ = 0;
    std::vector<std::uint16_t> grabbed_;
    bool isDown_ = false;
    bool takenByAnother_ = false;
    std::function<void()> action_;
    QObject guard_; // queued actions die with the hot key
};

} // namespace navro
