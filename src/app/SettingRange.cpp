#include "app/SettingRange.h"

#include "app/Log.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace navro {
namespace {

std::string shown(double value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

} // namespace

double BoundedSetting::use(double value)
{
    const bool isNaN = std::isnan(value);
    const bool inside = !isNaN && value >= range_.lowest && value <= range_.highest;
    const double used = inside ? value
                        : isNaN || range_.outside == SettingRange::Outside::fallback
                            ? range_.fallback
                            : std::clamp(value, range_.lowest, range_.highest);
    if (inside) {
        reported_.reset();
        reportedNaN_ = false;
        return used;
    }
    // NaN equals nothing, itself included, so it is remembered apart.
    const bool alreadySaid = isNaN ? reportedNaN_ : reported_ == value;
    if (!alreadySaid)
        logLine("setting \"" + std::string(range_.key) + "\" is " + shown(value) + ", outside " +
                shown(range_.lowest) + " to " + shown(range_.highest) + "; using " + shown(used));
    reported_ = isNaN ? std::nullopt : std::optional(value);
    reportedNaN_ = isNaN;
    return used;
}

} // namespace navro
