#pragma once

#include <QRegion>
#include <functional>
#include <memory>

class QWindow;

namespace navro {

// What the notch window needs of the window system beyond Qt's own window flags: letting the
// pointer through everywhere but the drawn notch, so that the transparent rest of the window
// never swallows a click meant for what lies below it; and handing keyboard focus back to the
// window that had it, since the window manager does not look after a window it does not manage.
class PanelWindowSystem {
public:
    virtual ~PanelWindowSystem() = default;
    // Whether setInputRegion can work here; without it the panel falls back to a window mask.
    virtual bool canShapeInput() const = 0;
    // `region` in the window's own logical coordinates. The window must have been created.
    virtual void setInputRegion(QWindow& window, const QRegion& region) = 0;
    // Called just before the panel takes keyboard focus: remembers the active window.
    virtual void rememberFocus(QWindow& panel) = 0;
    // Gives the panel keyboard focus now, whatever happened to focus since the last event Qt
    // saw.
    virtual void takeFocus(QWindow& panel) = 0;
    // Called when the panel closes while it still has focus: activates the remembered window.
    virtual void returnFocus(QWindow& panel) = 0;
    // While `pressed` is set, it is called on a later turn of the event loop after every pointer
    // button press anywhere on the screen, without taking the press from the window it is for.
    // An empty function stops the watch. Returns false when presses cannot be watched here.
    virtual bool watchPresses(std::function<void()> pressed) = 0;
};

// The display server's implementation; defined by the platform code.
std::unique_ptr<PanelWindowSystem> makePanelWindowSystem();

} // namespace navro
