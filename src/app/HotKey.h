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

// Registers `key` (a letter or digit) with `modifiers` (any of Control, Alt, Shift, Meta).
// Returns nullptr when the shortcut cannot be had: a display server without global shortcuts,
// a key the keyboard cannot type, or another program already holding the combination. That is
// not an error worth telling anyone about, so nothing is logged.
// Defined by the platform library.
std::unique_ptr<HotKey> makeHotKey(Qt::Key key, Qt::KeyboardModifiers modifiers,
                                   std::function<void()> action);

} // namespace navro
