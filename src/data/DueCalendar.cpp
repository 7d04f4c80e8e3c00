#include "data/DueCalendar.h"

#include "prayer/SystemZone.h"

#include <cmath>
#include <cstdlib>
#include <unicode/datefmt.h>
#include <unicode/fieldpos.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace navro {
namespace {

using namespace std::chrono;

UDate toUDate(WallTime at)
{
    return static_cast<UDate>(at.time_since_epoch().count());
}

WallTime fromUDate(UDate date)
{
    return WallTime(milliseconds(std::llround(date)));
}

struct PresetRule {
    int daysAhead;
    int hour;
};

PresetRule ruleOf(DuePreset preset)
{
    switch (preset) {
    case DuePreset::thisEvening:
        return {0, 18};
    case DuePreset::tonight:
        return {0, 21};
    case DuePreset::tomorrowMorning:
        return {1, 9};
    case DuePreset::tomorrowEvening:
        return {1, 18};
    case DuePreset::nextWeek:
        return {7, 9};
    case DuePreset::inOneHour:
        break;
    }
    return {0, 0};
}

// Far enough for any deadline a person sets and any roll-over a picker asks for, near enough
// that none of ICU's fields overflows.
constexpr int furthestYear = 100000;
constexpr int furthestField = 1000000;

// Enough for every deadline of a long list in both languages.
constexpr std::size_t maxRememberedLabels = 8192;

} // namespace

DueCalendar::DueCalendar(std::string_view zoneID)
{
    std::unique_ptr<icu::TimeZone> zone = zoneID.empty() ? nullptr : knownTimeZone(zoneID);
    if (!zone)
        zone.reset(icu::TimeZone::detectHostTimeZone());
    UErrorCode status = U_ZERO_ERROR;
    calendar_ = std::make_unique<icu::GregorianCalendar>(zone.release(), status);
    // A deadline in a skipped hour is meant for when the clock shows that hour again, and one in
    // a repeated hour is safer at its first occurrence than an hour late.
    calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
    calendar_->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
}

DueCalendar::~DueCalendar() = default;

std::string DueCalendar::zoneID() const
{
    icu::UnicodeString id;
    calendar_->getTimeZone().getID(id);
    std::string text;
    id.toUTF8String(text);
    return text;
}

LocalDateTime DueCalendar::localDateTime(WallTime at) const
{
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(at), status);
    LocalDateTime local;
    local.year = calendar_->get(UCAL_EXTENDED_YEAR, status);
    local.month = calendar_->get(UCAL_MONTH, status) + 1;
    local.day = calendar_->get(UCAL_DATE, status);
    local.hour = calendar_->get(UCAL_HOUR_OF_DAY, status);
    local.minute = calendar_->get(UCAL_MINUTE, status);
    return local;
}

std::optional<WallTime> DueCalendar::instantOf(const LocalDateTime& local) const
{
    // Fields this far out would overflow ICU's own arithmetic before it could report anything.
    for (int field : {local.month, local.day, local.hour, local.minute})
        if (std::abs(field) > furthestField)
            return std::nullopt;
    if (std::abs(local.year) > furthestYear)
        return std::nullopt;
    calendar_->clear();
    calendar_->set(UCAL_EXTENDED_YEAR, local.year);
    calendar_->set(UCAL_MONTH, local.month - 1);
    calendar_->set(UCAL_DATE, local.day);
    calendar_->set(UCAL_HOUR_OF_DAY, local.hour);
    calendar_->set(UCAL_MINUTE, local.minute);
    UErrorCode status = U_ZERO_ERROR;
    const UDate at = calendar_->getTime(status);
    if (U_FAILURE(status) || !std::isfinite(at))
        return std::nullopt;
    return fromUDate(at);
}

WallTime DueCalendar::presetMoment(DuePreset preset, WallTime now) const
{
    if (preset == DuePreset::inOneHour)
        return now + hours(1);
    const PresetRule rule = ruleOf(preset);
    LocalDateTime target = localDateTime(now);
    target.day += rule.daysAhead;
    target.hour = rule.hour;
    target.minute = 0;
    // The fields come from a real instant and move by at most a week, so they always convert.
    return instantOf(target).value_or(now);
}

int DueCalendar::dayNumber(WallTime at) const
{
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(at), status);
    return calendar_->get(UCAL_JULIAN_DAY, status);
}

const icu::DateFormat* DueCalendar::format(Pattern pattern, bool arabic) const
{
    auto& slot = formats_[static_cast<int>(pattern)][arabic ? 1 : 0];
    if (!slot) {
        // Skeletons rather than patterns: each locale orders the fields and picks its own
        // separators and digits.
        const char* skeleton = pattern == Pattern::time   ? "hm"
                               : pattern == Pattern::date ? "MMMdhm"
                                                          : "yMMMdhm";
        UErrorCode status = U_ZERO_ERROR;
        slot.reset(icu::DateFormat::createInstanceForSkeleton(
            icu::UnicodeString(skeleton), icu::Locale(arabic ? "ar" : "en"), status));
        if (U_FAILURE(status) || !slot)
            slot.reset(icu::DateFormat::createDateTimeInstance(icu::DateFormat::kShort,
                                                               icu::DateFormat::kShort));
        slot->setTimeZone(calendar_->getTimeZone());
    }
    return slot.get();
}

std::string DueCalendar::formatted(Pattern pattern, bool arabic, WallTime at) const
{
    // Formatting an instant would clone the formatter's calendar, zone and all, every time; the
    // calendar here is set and reused instead.
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(at), status);
    icu::UnicodeString text;
    icu::FieldPosition position;
    format(pattern, arabic)->format(*calendar_, text, position);
    std::string utf8;
    text.toUTF8String(utf8);
    return utf8;
}

std::string DueCalendar::deadlineLabel(WallTime due, WallTime now, bool overdue, bool arabic) const
{
    const LabelKey key{due, dayNumber(now), overdue, arabic};
    if (const auto known = labels_.find(key); known != labels_.end())
        return known->second;
    if (labels_.size() >= maxRememberedLabels)
        labels_.clear();
    return labels_[key] = newDeadlineLabel(due, now, overdue, arabic);
}

std::string DueCalendar::newDeadlineLabel(WallTime due, WallTime now, bool overdue,
                                          bool arabic) const
{
    std::string label = overdue ? (arabic ? "متأخرة · " : "Overdue · ") : "";
    switch (dayNumber(due) - dayNumber(now)) {
    case 0:
        return label + (arabic ? "اليوم " : "Today ") + formatted(Pattern::time, arabic, due);
    case 1:
        return label + (arabic ? "غداً " : "Tomorrow ") + formatted(Pattern::time, arabic, due);
    case -1:
        return label + (arabic ? "أمس " : "Yesterday ") + formatted(Pattern::time, arabic, due);
    default:
        break;
    }
    const bool sameYear = localDateTime(due).year == localDateTime(now).year;
    return label + formatted(sameYear ? Pattern::date : Pattern::dateWithYear, arabic, due);
}

} // namespace navro
