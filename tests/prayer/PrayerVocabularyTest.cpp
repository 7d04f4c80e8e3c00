#include "prayer/Prayer.h"
#include "prayer/PrayerCalculator.h"
#include "prayer/PrayerCity.h"

#include <cctype>
#include <gtest/gtest.h>
#include <set>
#include <unordered_set>

namespace navro {
namespace {

// Raw values are the case names exactly; every title is its own, and the English one is the raw
// value capitalised.
TEST(Prayer, RawValuesAndTitlesInBothLanguages)
{
    const char* names[] = {"fajr", "sunrise", "dhuhr", "asr", "maghrib", "isha"};
    std::set<std::string> arabic;
    for (std::size_t i = 0; i < allPrayers.size(); ++i) {
        const Prayer prayer = allPrayers[i];
        EXPECT_EQ(rawValue(prayer), names[i]);
        EXPECT_EQ(prayerFromRaw(names[i]), prayer);
        std::string english(names[i]);
        english[0] = char(std::toupper(english[0]));
        EXPECT_EQ(title(prayer).in(false), english);
        EXPECT_TRUE(title(prayer).in(true).starts_with("ال")) << english;
        arabic.insert(std::string(title(prayer).in(true)));
    }
    EXPECT_EQ(arabic.size(), allPrayers.size());
    EXPECT_EQ(title(Prayer::maghrib).in(true), "المغرب");
    EXPECT_FALSE(prayerFromRaw("Fajr").has_value());
    EXPECT_FALSE(prayerFromRaw("").has_value());
}

TEST(PrayerCity, TableHasTwentyThreeWellFormedCitiesInOrder)
{
    const auto& all = PrayerCity::all();
    ASSERT_EQ(all.size(), 23u);
    EXPECT_EQ(all.front().id, "manama");
    EXPECT_EQ(all.back().id, "london");

    std::set<std::string> ids;
    std::unordered_set<PrayerCity, PrayerCityHash> distinct;
    for (const auto& city : all) {
        EXPECT_TRUE(ids.insert(city.id).second) << "duplicate " << city.id;
        distinct.insert(city);
        for (char c : city.id)
            EXPECT_TRUE(c >= 'a' && c <= 'z') << city.id;
        EXPECT_FALSE(city.arabic.empty() || city.countryArabic.empty()) << city.id;
        EXPECT_GT(city.latitude, 20.0) << city.id;
        EXPECT_LT(city.latitude, 52.0) << city.id;
        // London alone lies west of Greenwich.
        EXPECT_EQ(city.longitude < 0, city.id == "london") << city.id;
        // Every zone id must be one the time-zone database knows.
        PrayerCalculator calculator(city.latitude, city.longitude, city.timeZoneID,
                                    city.suggestedMethod, AsrMethod::standard, "UTC");
        EXPECT_TRUE(calculator.isValid()) << city.id << " " << city.timeZoneID;
    }
    EXPECT_EQ(distinct.size(), 23u);
}

TEST(PrayerCity, LookupIsExactAndTheFallbackIsTheManamaRow)
{
    ASSERT_TRUE(PrayerCity::with("kuwait").has_value());
    EXPECT_EQ(PrayerCity::with("kuwait")->suggestedMethod, CalculationMethod::kuwait);
    EXPECT_FALSE(PrayerCity::with("Kuwait").has_value());
    EXPECT_FALSE(PrayerCity::with(" kuwait").has_value());

    const auto manama = PrayerCity::manama();
    EXPECT_EQ(manama, PrayerCity::all().front());
    EXPECT_EQ(manama.timeZoneID, "Asia/Bahrain");
    EXPECT_EQ(manama.suggestedMethod, CalculationMethod::ummAlQura);
    EXPECT_EQ(resolveCity("cairo").id, "cairo");
    for (const char* id : {"CAIRO", "Manama", "MANAMA", "atlantis", ""})
        EXPECT_EQ(resolveCity(id), manama) << id;
}

} // namespace
} // namespace navro
