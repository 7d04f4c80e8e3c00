#include "prayer/PrayerAstronomy.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace navro::astronomy {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Degrees in and out of the trigonometric functions. The conversions multiply by π before
// dividing, in that order, so that the last bit of every result matches the published constants
// (sin 0.833° = 0.014538080502496949).
double toRadians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}
double toDegrees(double radians)
{
    return radians * 180.0 / std::numbers::pi;
}
double dsin(double d)
{
    return std::sin(toRadians(d));
}
double dcos(double d)
{
    return std::cos(toRadians(d));
}
double dtan(double d)
{
    return std::tan(toRadians(d));
}
double dasin(double x)
{
    return toDegrees(std::asin(x));
}
double dacos(double x)
{
    return toDegrees(std::acos(x));
}
double datan(double x)
{
    return toDegrees(std::atan(x));
}
double datan2(double y, double x)
{
    return toDegrees(std::atan2(y, x));
}

constexpr double sunriseAltitude = 0.833;

// The time at which the sun stands `depression` degrees below the horizon, before (morning) or
// after (evening) noon. The sun's position is taken once, at a fixed guess of the time of day, and
// deliberately not refined: the times are defined by that single evaluation, and a refinement
// would move them away from the timetables they are checked against.
double depressionTime(double dayJulian, double latitude, double depression, double guess,
                      bool morning)
{
    const auto sun = sunPosition(dayJulian + guess);
    const double cosH = (-dsin(depression) - dsin(sun.declination) * dsin(latitude)) /
                        (dcos(sun.declination) * dcos(latitude));
    if (std::isnan(cosH) || std::abs(cosH) > 1.0)
        return nan;
    const double noon = wrapHour(12.0 - sun.equation);
    const double offset = dacos(cosH) / 15.0;
    return morning ? noon - offset : noon + offset;
}

double asrHour(double factor, double guess, double dayJulian, double latitude)
{
    const auto sun = sunPosition(dayJulian + guess / 24.0);
    const double altitude = datan(1.0 / (factor + dtan(std::abs(latitude - sun.declination))));
    const double cosH = (dsin(altitude) - dsin(latitude) * dsin(sun.declination)) /
                        (dcos(latitude) * dcos(sun.declination));
    if (std::isnan(cosH) || std::abs(cosH) > 1.0)
        return nan;
    return wrapHour(12.0 - sun.equation) + dacos(cosH) / 15.0;
}

} // namespace

double wrapAngle(double degrees)
{
    const double r = std::fmod(degrees, 360.0);
    return r < 0 ? r + 360.0 : r;
}

double wrapHour(double hours)
{
    const double r = std::fmod(hours, 24.0);
    return r < 0 ? r + 24.0 : r;
}

double julianDay(int year, int month, int day)
{
    double y = year;
    double m = month;
    if (m < 3) {
        y -= 1;
        m += 12;
    }
    const double a = std::floor(y / 100.0);
    const double b = 2.0 - a + std::floor(a * 0.25);
    return std::floor(365.25 * (y + 4716.0)) + std::floor(30.6001 * (m + 1.0)) + day + b - 1524.5;
}

SunPosition sunPosition(double julianDay)
{
    const double d = julianDay - 2451545.0;
    const double g = wrapAngle(357.529 + 0.98560028 * d);
    const double q = wrapAngle(280.459 + 0.98564736 * d);
    const double l = wrapAngle(q + 1.915 * dsin(g) + 0.020 * dsin(2.0 * g));
    const double e = 23.439 - 0.00000036 * d;
    const double ra = wrapHour(datan2(dcos(e) * dsin(l), dcos(l)) / 15.0);
    return {dasin(dsin(e) * dsin(l)), q / 15.0 - ra};
}

MethodRule ruleFor(CalculationMethod method)
{
    switch (method) {
    case CalculationMethod::ummAlQura:
        return {18.5, std::nullopt, 1.5, 2.0, std::nullopt};
    case CalculationMethod::gulf:
        return {19.5, std::nullopt, 1.5, 0, std::nullopt};
    case CalculationMethod::jafari:
        return {16.0, 14.0, 0, 0, 4.0};
    case CalculationMethod::muslimWorldLeague:
        return {18.0, 17.0, 0, 0, std::nullopt};
    case CalculationMethod::egyptian:
        return {19.5, 17.5, 0, 0, std::nullopt};
    case CalculationMethod::kuwait:
        return {18.0, 17.5, 0, 0, std::nullopt};
    case CalculationMethod::qatar:
        return {18.0, std::nullopt, 1.5, 0, std::nullopt};
    case CalculationMethod::karachi:
        return {18.0, 18.0, 0, 0, std::nullopt};
    case CalculationMethod::isna:
        return {15.0, 15.0, 0, 0, std::nullopt};
    }
    return {18.5, std::nullopt, 1.5, 2.0, std::nullopt};
}

double asrShadowFactor(AsrMethod asr)
{
    return asr == AsrMethod::hanafi ? 2.0 : 1.0;
}

std::array<double, 6> solarHours(double dayJulian, double latitude, CalculationMethod method,
                                 AsrMethod asr, bool inRamadan)
{
    const auto rule = ruleFor(method);
    const double fajr = depressionTime(dayJulian, latitude, rule.fajrAngle, 5.0 / 24.0, true);
    const double sunrise = depressionTime(dayJulian, latitude, sunriseAltitude, 6.0 / 24.0, true);
    const double dhuhr = wrapHour(12.0 - sunPosition(dayJulian + 12.0 / 24.0).equation);
    const double asrTime = asrHour(asrShadowFactor(asr), 13.0, dayJulian, latitude);
    const double sunset = depressionTime(dayJulian, latitude, sunriseAltitude, 18.0 / 24.0, false);

    double maghrib = sunset;
    if (rule.maghribAngle)
        maghrib = depressionTime(dayJulian, latitude, *rule.maghribAngle, 18.0 / 24.0, false);

    double isha;
    if (rule.ishaAngle) {
        isha = depressionTime(dayJulian, latitude, *rule.ishaAngle, 18.0 / 24.0, false);
    } else {
        const bool longer = inRamadan && rule.ramadanIshaDelayHours > 0;
        isha = sunset + (longer ? rule.ramadanIshaDelayHours : rule.ishaDelayHours);
    }
    return {fajr, sunrise, dhuhr, asrTime, maghrib, isha};
}

long long roundedMinutes(double hours)
{
    // std::llround takes halves away from zero, which is the rounding the published times use.
    return std::llround(hours * 60.0);
}

} // namespace navro::astronomy
