#pragma once

#include "prayer/CalculationMethod.h"

#include <array>
#include <optional>

namespace navro::astronomy {

// The low-precision solar model behind the prayer times. Everything here works in degrees and in
// hours of local solar time; turning those hours into instants of a civil day is the
// calculator's business.

double wrapAngle(double degrees);
double wrapHour(double hours);

// Julian day number at 0h UT of a Gregorian calendar date.
double julianDay(int year, int month, int day);

struct SunPosition {
    double declination; // degrees
    double equation;    // equation of time, hours
};
SunPosition sunPosition(double julianDay);

// How a method places Fajr, Maghrib and Isha.
struct MethodRule {
    double fajrAngle;
    std::optional<double> ishaAngle;    // none: Isha is a fixed delay after sunset
    double ishaDelayHours = 0;          // used when ishaAngle is none
    double ramadanIshaDelayHours = 0;   // used in Ramadan when non-zero
    std::optional<double> maghribAngle; // none: Maghrib is sunset
};
MethodRule ruleFor(CalculationMethod method);

double asrShadowFactor(AsrMethod asr);

// The six times in local solar hours (before the zone offset and longitude are applied), in the
// order fajr, sunrise, dhuhr, asr, maghrib, isha. A time the sun never reaches is NaN.
// `dayJulian` is the day's Julian day already shifted by longitude/360.
std::array<double, 6> solarHours(double dayJulian, double latitude, CalculationMethod method,
                                 AsrMethod asr, bool inRamadan);

// Minutes from the day's base for an hour value, rounded to the nearest minute with halves going
// away from zero.
long long roundedMinutes(double hours);

} // namespace navro::astronomy
