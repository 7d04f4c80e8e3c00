#include "prayer/PrayerCity.h"

#include <functional>

namespace navro {
namespace {

using M = CalculationMethod;

std::vector<PrayerCity> makeTable()
{
    return {
        {"manama", "Manama", "المنامة", "Bahrain", "البحرين", 26.2235, 50.5876, "Asia/Bahrain",
         M::ummAlQura},
        {"muharraq", "Muharraq", "المحرق", "Bahrain", "البحرين", 26.2572, 50.6119, "Asia/Bahrain",
         M::ummAlQura},
        {"riffa", "Riffa", "الرفاع", "Bahrain", "البحرين", 26.13, 50.555, "Asia/Bahrain",
         M::ummAlQura},
        {"isatown", "Isa Town", "مدينة عيسى", "Bahrain", "البحرين", 26.1736, 50.5478,
         "Asia/Bahrain", M::ummAlQura},
        {"hamadtown", "Hamad Town", "مدينة حمد", "Bahrain", "البحرين", 26.1153, 50.5069,
         "Asia/Bahrain", M::ummAlQura},
        {"makkah", "Makkah", "مكة المكرمة", "Saudi Arabia", "السعودية", 21.4225, 39.8262,
         "Asia/Riyadh", M::ummAlQura},
        {"madinah", "Madinah", "المدينة المنورة", "Saudi Arabia", "السعودية", 24.4672, 39.6112,
         "Asia/Riyadh", M::ummAlQura},
        {"riyadh", "Riyadh", "الرياض", "Saudi Arabia", "السعودية", 24.7136, 46.6753, "Asia/Riyadh",
         M::ummAlQura},
        {"jeddah", "Jeddah", "جدة", "Saudi Arabia", "السعودية", 21.4858, 39.1925, "Asia/Riyadh",
         M::ummAlQura},
        {"dammam", "Dammam", "الدمام", "Saudi Arabia", "السعودية", 26.4207, 50.0888, "Asia/Riyadh",
         M::ummAlQura},
        {"khobar", "Al Khobar", "الخبر", "Saudi Arabia", "السعودية", 26.2172, 50.1971,
         "Asia/Riyadh", M::ummAlQura},
        {"kuwait", "Kuwait City", "مدينة الكويت", "Kuwait", "الكويت", 29.3759, 47.9774,
         "Asia/Kuwait", M::kuwait},
        {"doha", "Doha", "الدوحة", "Qatar", "قطر", 25.2854, 51.531, "Asia/Qatar", M::qatar},
        {"dubai", "Dubai", "دبي", "UAE", "الإمارات", 25.2048, 55.2708, "Asia/Dubai", M::gulf},
        {"abudhabi", "Abu Dhabi", "أبوظبي", "UAE", "الإمارات", 24.4539, 54.3773, "Asia/Dubai",
         M::gulf},
        {"sharjah", "Sharjah", "الشارقة", "UAE", "الإمارات", 25.3463, 55.4209, "Asia/Dubai",
         M::gulf},
        {"muscat", "Muscat", "مسقط", "Oman", "عُمان", 23.588, 58.3829, "Asia/Muscat", M::gulf},
        {"cairo", "Cairo", "القاهرة", "Egypt", "مصر", 30.0444, 31.2357, "Africa/Cairo",
         M::egyptian},
        {"amman", "Amman", "عمّان", "Jordan", "الأردن", 31.9539, 35.9106, "Asia/Amman",
         M::muslimWorldLeague},
        {"baghdad", "Baghdad", "بغداد", "Iraq", "العراق", 33.3152, 44.3661, "Asia/Baghdad",
         M::muslimWorldLeague},
        {"beirut", "Beirut", "بيروت", "Lebanon", "لبنان", 33.8938, 35.5018, "Asia/Beirut",
         M::muslimWorldLeague},
        {"istanbul", "Istanbul", "إسطنبول", "Türkiye", "تركيا", 41.0082, 28.9784, "Europe/Istanbul",
         M::muslimWorldLeague},
        {"london", "London", "لندن", "UK", "المملكة المتحدة", 51.5074, -0.1278, "Europe/London",
         M::muslimWorldLeague},
    };
}

} // namespace

PrayerCity PrayerCity::manama()
{
    return {"manama",  "Manama",       "المنامة",
            "Bahrain", "البحرين",      26.2235,
            50.5876,   "Asia/Bahrain", CalculationMethod::ummAlQura};
}

const std::vector<PrayerCity>& PrayerCity::all()
{
    static const std::vector<PrayerCity> table = makeTable();
    return table;
}

std::optional<PrayerCity> PrayerCity::with(std::string_view id)
{
    for (const auto& city : all())
        if (city.id == id)
            return city;
    return std::nullopt;
}

PrayerCity resolveCity(std::string_view id)
{
    if (auto city = PrayerCity::with(id))
        return *city;
    return PrayerCity::manama();
}

std::size_t PrayerCityHash::operator()(const PrayerCity& city) const
{
    std::size_t seed = 0;
    auto mix = [&seed](std::size_t value) {
        seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
    };
    std::hash<std::string> strings;
    std::hash<double> doubles;
    mix(strings(city.id));
    mix(strings(city.english));
    mix(strings(city.arabic));
    mix(strings(city.countryEnglish));
    mix(strings(city.countryArabic));
    mix(doubles(city.latitude));
    mix(doubles(city.longitude));
    mix(strings(city.timeZoneID));
    mix(std::hash<int>()(static_cast<int>(city.suggestedMethod)));
    return seed;
}

} // namespace navro
