#include "app/MenuPanelPlacement.h"

#include <algorithm>

namespace navro {
namespace {

constexpr int gap = 6;

int clampInto(int position, int length, int start, int extent)
{
    return std::max(start, std::min(position, start + extent - length));
}

} // namespace

QRect menuPanelFrame(const QRect& anchor, const QSize& size, const QRect& screen,
                     const QRect& available, bool rightToLeft)
{
    const QRect area = available.isValid() ? available : screen;
    if (!anchor.isValid() || !screen.intersects(anchor)) {
        const int x = rightToLeft ? area.left() + gap : area.right() + 1 - gap - size.width();
        return {QPoint(x, area.top() + gap), size};
    }
    const bool below = anchor.center().y() < screen.center().y();
    int y = below ? anchor.bottom() + 1 + gap : anchor.top() - gap - size.height();
    y = clampInto(y, size.height(), area.top(), area.height());
    int x = anchor.center().x() - size.width() / 2;
    x = clampInto(x, size.width(), area.left(), area.width());
    return {QPoint(x, y), size};
}

bool PopupDismissal::justDismissed(WallTime now) const
{
    return dismissedAt_ && now >= *dismissedAt_ && now - *dismissedAt_ < grace;
}

} // namespace navro
