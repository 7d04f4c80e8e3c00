#include "notch/NotchGeometry.h"

#include <algorithm>

namespace navro {

std::optional<ScreenDescription> preferredScreen(const std::vector<ScreenDescription>& screens)
{
    auto withHousing = std::find_if(screens.begin(), screens.end(),
                                    [](const auto& screen) { return screen.safeAreaTopInset > 0; });
    if (withHousing != screens.end())
        return *withHousing;
    auto main = std::find_if(screens.begin(), screens.end(),
                             [](const auto& screen) { return screen.isMain; });
    if (main != screens.end())
        return *main;
    if (!screens.empty())
        return screens.front();
    return std::nullopt;
}

NotchSize openNotchSizeFor(int screenWidth, int screenHeight)
{
    const int margin = openNotchScreenMargin;
    return {std::clamp(screenWidth - 2 * margin, 0, openNotchSize.width),
            std::clamp(screenHeight - margin, 0, openNotchSize.height)};
}

NotchGeometry geometryFor(const ScreenDescription& screen)
{
    NotchGeometry geometry{
        screen.name,   screen.x, screen.y, screen.width,
        screen.height, false,    {},       openNotchSizeFor(screen.width, screen.height)};
    if (screen.safeAreaTopInset > 0 && screen.auxiliaryTopLeftWidth &&
        screen.auxiliaryTopRightWidth) {
        geometry.hasPhysicalNotch = true;
        geometry.closedSize = {screen.width - *screen.auxiliaryTopLeftWidth -
                                   *screen.auxiliaryTopRightWidth,
                               screen.safeAreaTopInset};
        return geometry;
    }
    // A virtual notch, as tall as the top panel (the gap above the available area) and never
    // shorter than 24.
    const int topPanelHeight = screen.availableY - screen.y;
    geometry.closedSize = {190, std::max(24, topPanelHeight)};
    return geometry;
}

} // namespace navro
