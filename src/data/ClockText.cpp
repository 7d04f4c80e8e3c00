#include "data/ClockText.h"

#include <cfloat>
#include <cmath>
#include <cstdio>

namespace navro {

std::string clockText(double seconds)
{
    // Plain double arithmetic keeps any size of duration exact up to 2^53 seconds and still
    // well defined beyond (an integer conversion would overflow there). An infinite duration is
    // drawn as the longest finite one rather than as "inf".
    double whole = seconds > 0 ? std::trunc(std::min(seconds, DBL_MAX)) : 0.0;
    const int secondsPart = int(std::fmod(whole, 60.0));
    const double totalMinutes = std::floor(whole / 60.0);
    const int minutesPart = int(std::fmod(totalMinutes, 60.0));
    const double hours = std::floor(totalMinutes / 60.0);

    char text[400];
    if (hours < 1)
        std::snprintf(text, sizeof text, "%d:%02d", minutesPart, secondsPart);
    else
        std::snprintf(text, sizeof text, "%.0f:%02d:%02d", hours, minutesPart, secondsPart);
    return text;
}

} // namespace navro
