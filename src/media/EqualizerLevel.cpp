#include "media/EqualizerLevel.h"

#include <algorithm>
#include <cmath>

namespace navro {

float equalizerLevel(int index, bool playing, const std::vector<float>& live, double seconds)
{
    if (!playing)
        return 0.25f;
    if (index >= 0 && std::size_t(index) < live.size())
        return live[std::size_t(index)] * 0.86f + 0.14f;
    const double speed = (index % 4) * 1.7 + 5.0;
    return float(std::abs(std::sin(seconds * speed + index)) * 0.65 + 0.35);
}

std::vector<int> barPixelHeights(const std::vector<float>& levels, double height, int minimum)
{
    std::vector<int> pixels;
    pixels.reserve(levels.size());
    for (float level : levels) {
        // NaN clamps to nothing, not to an undefined conversion.
        const double fraction = level > 0 ? std::min(double(level), 1.0) : 0.0;
        pixels.push_back(std::max(minimum, int(std::lround(height * fraction))));
    }
    return pixels;
}

} // namespace navro
