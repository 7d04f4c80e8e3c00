#pragma once

#include "app/Clock.h"

#include <QRect>
#include <QSize>
#include <optional>

namespace navro {

// Where the menu-bar panel opens: under the tray item when the item is in the upper half of its
// screen (a top panel), above it otherwise, centred on the item and kept inside the screen's
// available area. Without an item geometry (some trays do not tell) it opens in the top
// trailing corner.
QRect menuPanelFrame(const QRect& anchor, const QSize& size, const QRect& screen,
                     const QRect& available, bool rightToLeft);

// A popup that hides itself when it loses focus hides a moment before the click on its tray item
// arrives, and that click would show it again at once. For a short while after such a dismissal
// the popup still counts as shown, so the click closes it as the user meant.
class PopupDismissal {
public:
    static constexpr Duration grace = std::chrono::milliseconds(300);

    void noteDismissed(WallTime now) { dismissedAt_ = now; }
    bool justDismissed(WallTime now) const;
    void reset() { dismissedAt_.reset(); }

private:
    std::optional<WallTime> dismissedAt_;
};

} // namespace navro
