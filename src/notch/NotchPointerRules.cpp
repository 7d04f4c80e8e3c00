#include "notch/NotchPointerRules.h"

namespace navro {

bool NotchPointerRules::leavingCloses() const
{
    return host_.hoverOpens() || host_.openedByHover();
}

void NotchPointerRules::pointerEntered()
{
    host_.setTracking(false);
    if (host_.isOpen()) {
        // Back on the panel before the close fired: it stays open.
        host_.cancelScheduled();
        return;
    }
    if (host_.hoverOpens())
        host_.scheduleOpen();
}

void NotchPointerRules::pointerLeft()
{
    if (!host_.isOpen() || !leavingCloses())
        return;
    if (host_.pointerInOpenHotZone())
        host_.setTracking(true);
    else
        host_.scheduleClose();
}

void NotchPointerRules::trackPointer()
{
    if (!host_.isOpen()) {
        host_.setTracking(false);
        return;
    }
    if (host_.pointerInOpenHotZone())
        return;
    host_.setTracking(false);
    if (leavingCloses())
        host_.scheduleClose();
}

void NotchPointerRules::pressed(bool windowIsActive)
{
    if (!host_.isOpen()) {
        // One click opens at once, in either mode, and the panel is then ready for typing.
        host_.open(false, true);
        return;
    }
    // A click inside a panel that was opened without focus means the user wants to work in it.
    if (!windowIsActive)
        host_.activateWindow();
}

void NotchPointerRules::windowDeactivated()
{
    if (host_.isOpen())
        host_.close();
}

void NotchPointerRules::pressedElsewhere()
{
    if (host_.isOpen())
        host_.close();
}

void NotchPointerRules::escapePressed()
{
    if (host_.isOpen())
        host_.close();
}

void NotchPointerRules::statusChanged(bool isOpen, bool focus)
{
    host_.cancelScheduled();
    host_.setTracking(false);
    host_.setWatchingPresses(isOpen);
    if (isOpen && focus)
        host_.activateWindow();
    else if (!isOpen)
        host_.releaseFocus();
}

} // namespace navro
