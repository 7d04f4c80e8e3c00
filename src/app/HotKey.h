#pragma once

#include <Qt>
#include <functional>
#include <memory>

namespace navro {

// One system-wide keyboard shortcut. The action runs on the main thread, on a later turn of the
// event loop than the key press. Destroying the object releases the shortcut.
class HotKey {
public:
    virtual ~HotKey() = default;
};

struct HotKeyGrab {
    std::unique_ptr<HotKey> hotKey; // the shortcut is ours while it lives
    // Without a hot key: another program holds the combination, which the user can change. The
    // other reasons (a display server without global shortcuts, a key the keyboard cannot type)
    // are for good.
    bool takenByAnother = false;
};

// Registers `key` (a letter or digit) with `modifiers` (any of Control, Alt, Shift, Meta).
// Nothing is logged: the caller knows what the shortcut is for. Defined by the platform library.
HotKeyGrab makeHotKey(Qt::Key key, Qt::KeyboardModifiers modifiers, std::function<void()> action);

} // namespace navro
