#include "calendar/HijriDate.h"

#include <memory>
#include <unicode/calendar.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace navro {

std::string formatHijriDate(int year, int month, int day, bool arabic, std::string_view pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    // Noon UTC of the civil date lies inside that date's Hijri day whatever the zone: Umm
    // al-Qura days are reckoned from midnight here.
    icu::GregorianCalendar gregorian(*icu::TimeZone::getGMT(), status);
    gregorian.clear();
    gregorian.set(year, month - 1, day, 12, 0, 0);
    const UDate at = gregorian.getTime(status);
    const icu::Locale locale(arabic ? "ar@calendar=islamic-umalqura;numbers=arab"
                                    : "en@calendar=islamic-umalqura");
    icu::SimpleDateFormat format(
        icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), int(pattern.size()))), locale,
        status);
    if (U_FAILURE(status))
        return {};
    format.setTimeZone(*icu::TimeZone::getGMT());
    icu::UnicodeString text;
    format.format(at, text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

} // namespace navro
