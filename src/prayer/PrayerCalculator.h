#pragma once

#include "prayer/CalculationMethod.h"
#include "prayer/Prayer.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace navro {

// The six prayer instants of one civil day at one place. Built once per place and settings and
// then asked for any number of days; asking is cheap (the time-zone machinery is prepared in the
// constructor) and safe from several threads.
class PrayerCalculator {
public:
    // `hijriTimeZoneID` is the zone in which the Umm al-Qura month (for the Ramadan rule) is read;
    // it is the zone of the machine, not of the place, and defaults to the system's current zone.
    PrayerCalculator(double latitude, double longitude, const std::string& timeZoneID,
                     CalculationMethod method, AsrMethod asr,
                     const std::optional<std::string>& hijriTimeZoneID = std::nullopt);
    ~PrayerCalculator();
    PrayerCalculator(const PrayerCalculator& other);
    PrayerCalculator& operator=(const PrayerCalculator& other);
    PrayerCalculator(PrayerCalculator&&) noexcept;
    PrayerCalculator& operator=(PrayerCalculator&&) noexcept;

    // The times of the place's calendar day that contains `instant`. A time the sun never reaches
    // that day is absent; an unusable time zone gives an empty map.
    std::map<Prayer, std::chrono::sys_seconds> times(std::chrono::sys_seconds instant) const;

    // The first instant of the place's calendar day after the one containing `instant`, or none
    // when the time zone is unusable.
    std::optional<std::chrono::sys_seconds> nextDayStart(std::chrono::sys_seconds instant) const;

    // False when the place's time zone id was not recognised.
    bool isValid() const;
    // What was wrong with the input, one readable sentence each (an unknown zone, a missing
    // calendar), for the owner to log; empty when everything was usable.
    const std::vector<std::string>& warnings() const { return warnings_; }

    double latitude() const { return latitude_; }
    double longitude() const { return longitude_; }
    CalculationMethod method() const { return method_; }
    AsrMethod asr() const { return asr_; }

private:
    struct Zones;

    double latitude_;
    double longitude_;
    CalculationMethod method_;
    AsrMethod asr_;
    std::unique_ptr<Zones> zones_;
    std::vector<std::string> warnings_;
};

} // namespace navro
