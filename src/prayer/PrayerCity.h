#pragma once

#include "prayer/CalculationMethod.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// One of the built-in places for which prayer times are computed. `id` is what the settings keep
// under "prayerCityID".
struct PrayerCity {
    std::string id;
    std::string english;
    std::string arabic;
    std::string countryEnglish;
    std::string countryArabic;
    double latitude = 0;  // degrees, north positive
    double longitude = 0; // degrees, east positive
    std::string timeZoneID;
    CalculationMethod suggestedMethod = CalculationMethod::ummAlQura;

    bool operator==(const PrayerCity&) const = default;

    // The whole table, in its fixed order (grouped by country, the way the settings list it).
    static const std::vector<PrayerCity>& all();
    // Exact, case-sensitive match on `id`; the first match in table order.
    static std::optional<PrayerCity> with(std::string_view id);
    // The place used whenever a stored id matches nothing.
    static PrayerCity manama();
};

// The city for a stored id, or Manama when the id is unknown (including a wrongly cased one).
PrayerCity resolveCity(std::string_view id);

struct PrayerCityHash {
    std::size_t operator()(const PrayerCity& city) const;
};

} // namespace navro
