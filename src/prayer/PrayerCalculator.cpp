#include "prayer/PrayerCalculator.h"

#include "prayer/PrayerAstronomy.h"
#include "prayer/SystemZone.h"

#include <cmath>
#include <mutex>
#include <unicode/calendar.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace navro {
namespace {

constexpr int ramadanMonthIndex = 8; // ICU counts months from 0

std::unique_ptr<icu::Calendar> clone(const std::unique_ptr<icu::Calendar>& calendar)
{
    return calendar ? std::unique_ptr<icu::Calendar>(calendar->clone()) : nullptr;
}

UDate toUDate(std::chrono::sys_seconds instant)
{
    return static_cast<UDate>(instant.time_since_epoch().count()) * 1000.0;
}

std::chrono::sys_seconds fromUDate(UDate date)
{
    return std::chrono::sys_seconds(std::chrono::seconds(std::llround(std::floor(date / 1000.0))));
}

struct CivilDay {
    int year;
    int month; // 1-12
    int day;
};

} // namespace

// ICU calendars keep their last computation inside themselves, so one calendar per calculator is
// shared under a lock rather than built for every call: building one costs far more than a whole
// day's astronomy.
struct PrayerCalculator::Zones {
    std::unique_ptr<icu::Calendar> civil; // Gregorian, in the place's zone; null when unknown
    std::unique_ptr<icu::Calendar> hijri; // Umm al-Qura, in the machine's zone; null if unused
    std::mutex mutex;

    std::optional<CivilDay> dayOf(UDate at)
    {
        UErrorCode status = U_ZERO_ERROR;
        civil->setTime(at, status);
        const int year = civil->get(UCAL_EXTENDED_YEAR, status);
        const int month = civil->get(UCAL_MONTH, status) + 1;
        const int day = civil->get(UCAL_DATE, status);
        if (U_FAILURE(status))
            return std::nullopt;
        return CivilDay{year, month, day};
    }

    // The first instant of a calendar day. Lenient, so day + 1 rolls over into the next month.
    std::optional<UDate> startOf(int year, int month, int day)
    {
        UErrorCode status = U_ZERO_ERROR;
        civil->clear();
        civil->set(UCAL_EXTENDED_YEAR, year);
        civil->set(UCAL_MONTH, month - 1);
        civil->set(UCAL_DATE, day);
        const UDate start = civil->getTime(status);
        if (U_FAILURE(status))
            return std::nullopt;
        return start;
    }

    std::optional<int> offsetSecondsAt(UDate at) const
    {
        UErrorCode status = U_ZERO_ERROR;
        int32_t raw = 0;
        int32_t dst = 0;
        civil->getTimeZone().getOffset(at, false, raw, dst, status);
        if (U_FAILURE(status))
            return std::nullopt;
        return (raw + dst) / 1000;
    }

    bool inRamadan(UDate at)
    {
        if (!hijri)
            return false;
        UErrorCode status = U_ZERO_ERROR;
        hijri->setTime(at, status);
        const int month = hijri->get(UCAL_MONTH, status);
        return U_SUCCESS(status) && month == ramadanMonthIndex;
    }
};

PrayerCalculator::PrayerCalculator(double latitude, double longitude, const std::string& timeZoneID,
                                   CalculationMethod method, AsrMethod asr,
                                   const std::optional<std::string>& hijriTimeZoneID)
    : latitude_(latitude), longitude_(longitude), method_(method), asr_(asr),
      zones_(std::make_unique<Zones>())
{
    auto zone = knownTimeZone(timeZoneID);
    if (!zone) {
        warnings_.push_back("unknown time zone \"" + timeZoneID +
                            "\"; no prayer times can be computed");
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    auto civil = std::make_unique<icu::GregorianCalendar>(zone.release(), status);
    if (U_FAILURE(status)) {
        warnings_.push_back("could not build a calendar for \"" + timeZoneID +
                            "\": " + u_errorName(status));
        return;
    }
    // On a day whose midnight the clock skips, the day begins at the change itself.
    civil->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
    zones_->civil = std::move(civil);

    // Only one method has a Ramadan rule; the others never read the Hijri month.
    if (method != CalculationMethod::ummAlQura)
        return;
    std::unique_ptr<icu::TimeZone> hijriZone;
    if (hijriTimeZoneID) {
        hijriZone = knownTimeZone(*hijriTimeZoneID);
        if (!hijriZone)
            warnings_.push_back("unknown time zone \"" + *hijriTimeZoneID +
                                "\" for the Hijri month; using the system zone");
    }
    if (!hijriZone)
        hijriZone.reset(icu::TimeZone::detectHostTimeZone());
    status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> hijri(icu::Calendar::createInstance(
        hijriZone.release(), icu::Locale("en@calendar=islamic-umalqura"), status));
    if (U_FAILURE(status) || !hijri || std::string_view(hijri->getType()) != "islamic-umalqura") {
        warnings_.push_back(
            "the Umm al-Qura calendar is not available; Isha keeps its usual delay in Ramadan");
        return;
    }
    zones_->hijri = std::move(hijri);
}

PrayerCalculator::~PrayerCalculator() = default;

PrayerCalculator::PrayerCalculator(const PrayerCalculator& other)
    : latitude_(other.latitude_), longitude_(other.longitude_), method_(other.method_),
      asr_(other.asr_), zones_(std::make_unique<Zones>()), warnings_(other.warnings_)
{
    if (!other.zones_)
        return; // a moved-from calculator copies as an unusable one
    std::lock_guard lock(other.zones_->mutex);
    zones_->civil = clone(other.zones_->civil);
    zones_->hijri = clone(other.zones_->hijri);
}

PrayerCalculator& PrayerCalculator::operator=(const PrayerCalculator& other)
{
    if (this != &other) {
        PrayerCalculator copy(other);
        *this = std::move(copy);
    }
    return *this;
}

PrayerCalculator::PrayerCalculator(PrayerCalculator&&) noexcept = default;
PrayerCalculator& PrayerCalculator::operator=(PrayerCalculator&&) noexcept = default;

bool PrayerCalculator::isValid() const
{
    return zones_ && zones_->civil;
}

std::map<Prayer, std::chrono::sys_seconds>
PrayerCalculator::times(std::chrono::sys_seconds instant) const
{
    if (!isValid())
        return {};
    const UDate at = toUDate(instant);

    CivilDay day{};
    int offsetSeconds = 0;
    bool ramadan = false;
    {
        std::lock_guard lock(zones_->mutex);
        const auto civilDay = zones_->dayOf(at);
        if (!civilDay)
            return {};
        day = *civilDay;
        const auto start = zones_->startOf(day.year, day.month, day.day);
        if (!start)
            return {};
        // The offset of the day's first instant holds for the whole day, so a change of
        // daylight-saving time later that day does not shift the times.
        const auto offset = zones_->offsetSecondsAt(*start);
        if (!offset)
            return {};
        offsetSeconds = *offset;
        if (method_ == CalculationMethod::ummAlQura)
            ramadan = zones_->inRamadan(at);
    }

    // The times are clock hours counted from 00:00 at that offset. On an ordinary day that is the
    // day's first instant. Where the clock jumps forward at midnight (Beirut, Cairo), 00:00 never
    // shows and the day begins at 01:00; counting from there would put every time an hour late,
    // so the count starts where 00:00 would have been at the new offset.
    using namespace std::chrono;
    const sys_seconds utcMidnight =
        sys_days(year(day.year) / month(unsigned(day.month)) / std::chrono::day(unsigned(day.day)));
    const sys_seconds base = utcMidnight - seconds(offsetSeconds);

    const double dayJulian =
        astronomy::julianDay(day.year, day.month, day.day) - longitude_ / 360.0;
    const auto hours = astronomy::solarHours(dayJulian, latitude_, method_, asr_, ramadan);
    // Local solar hours become clock hours. The sum is not wrapped into 0-24: a time that falls
    // before midnight or after the next one belongs to the neighbouring day, and says so.
    const double adjust = offsetSeconds / 3600.0 - longitude_ / 15.0;

    std::map<Prayer, sys_seconds> result;
    for (std::size_t i = 0; i < hours.size(); ++i) {
        const double value = hours[i] + adjust;
        if (std::isfinite(value))
            result.emplace(allPrayers[i], base + minutes(astronomy::roundedMinutes(value)));
    }
    return result;
}

std::optional<std::chrono::sys_seconds>
PrayerCalculator::nextDayStart(std::chrono::sys_seconds instant) const
{
    if (!isValid())
        return std::nullopt;
    std::lock_guard lock(zones_->mutex);
    const auto day = zones_->dayOf(toUDate(instant));
    if (!day)
        return std::nullopt;
    const auto start = zones_->startOf(day->year, day->month, day->day + 1);
    if (!start)
        return std::nullopt;
    return fromUDate(*start);
}

} // namespace navro
