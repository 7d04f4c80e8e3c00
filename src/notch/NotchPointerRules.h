#pragma once

namespace navro {

// How the notch window answers the pointer, clicks and keyboard focus, apart from the window and
// the view model it drives, so that every rule can be exercised without a display.
//
// The window takes pointer input only over the drawn notch, so it hears of the pointer only when
// it crosses that area. Closed, the scheduled open checks the hot zone itself when its delay has
// passed, so nothing needs watching. Open, the hot zone reaches past the window's input area:
// after the pointer leaves the notch the rules ask for brief tracking until the pointer is either
// back on the notch or out of the hot zone.
//
// Clicks outside: while open, the rules watch every button press on the screen, and one outside
// the open notch closes it, whoever gets the click. Where presses cannot be watched, a panel that
// holds keyboard focus still closes when it loses it (the window manager moves focus to whatever
// was clicked). Independently, the pointer leaving the hot zone closes the panel in hover mode,
// or when it was opened by hovering.
class NotchPointerRules {
public:
    // What the rules read and ask for.
    class Host {
    public:
        virtual ~Host() = default;
        virtual bool isOpen() const = 0;
        virtual bool openedByHover() const = 0;
        virtual bool hoverOpens() const = 0; // the open mode is hover
        virtual bool pointerInOpenHotZone() const = 0;

        virtual void scheduleOpen() = 0;
        virtual void scheduleClose() = 0;
        virtual void cancelScheduled() = 0;
        virtual void open(bool byHover, bool focus) = 0;
        virtual void close() = 0;
        virtual void activateWindow() = 0;
        // Gives keyboard focus back to whoever had it before the panel took it, if it has it.
        virtual void releaseFocus() = 0;
        virtual void setTracking(bool on) = 0;
        virtual void setWatchingPresses(bool on) = 0;
    };

    explicit NotchPointerRules(Host& host) : host_(host) {}

    void pointerEntered();
    void pointerLeft();
    // The tracking tick while the pointer is off the notch but may still be in its hot zone.
    void trackPointer();
    void pressed(bool windowIsActive);
    void windowDeactivated();
    // A button press anywhere on the screen but on the open notch.
    void pressedElsewhere();
    void escapePressed();
    // After every change of the view model's status.
    void statusChanged(bool isOpen, bool focus);

private:
    bool leavingCloses() const;

    Host& host_;
};

} // namespace navro
