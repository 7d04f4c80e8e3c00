#include "prayer/Prayer.h"

#include "app/RawValue.h"

namespace navro {

std::string_view rawValue(Prayer prayer)
{
    switch (prayer) {
    case Prayer::fajr:
        return "fajr";
    case Prayer::sunrise:
        return "sunrise";
    case Prayer::dhuhr:
        return "dhuhr";
    case Prayer::asr:
        return "asr";
    case Prayer::maghrib:
        return "maghrib";
    case Prayer::isha:
        return "isha";
    }
    return "fajr";
}

BilingualText title(Prayer prayer)
{
    switch (prayer) {
    case Prayer::fajr:
        return {"Fajr", "الفجر"};
    case Prayer::sunrise:
        return {"Sunrise", "الشروق"};
    case Prayer::dhuhr:
        return {"Dhuhr", "الظهر"};
    case Prayer::asr:
        return {"Asr", "العصر"};
    case Prayer::maghrib:
        return {"Maghrib", "المغرب"};
    case Prayer::isha:
        return {"Isha", "العشاء"};
    }
    return {};
}

std::optional<Prayer> prayerFromRaw(std::string_view raw)
{
    return fromRaw(allPrayers, raw);
}

} // namespace navro
