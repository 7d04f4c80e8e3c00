#pragma once

#include "app/BilingualText.h"

#include <array>
#include <optional>
#include <string_view>

namespace navro {

// The six daily times, in the order of the day. The raw value (the case name) is how a prayer is
// named outside the program: in views, in activity payloads, in logs.
enum class Prayer { fajr, sunrise, dhuhr, asr, maghrib, isha };

inline constexpr std::array allPrayers{Prayer::fajr, Prayer::sunrise, Prayer::dhuhr,
                                       Prayer::asr,  Prayer::maghrib, Prayer::isha};

std::string_view rawValue(Prayer prayer);
BilingualText title(Prayer prayer);
std::optional<Prayer> prayerFromRaw(std::string_view raw);

} // namespace navro
