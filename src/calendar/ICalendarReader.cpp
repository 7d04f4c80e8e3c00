#include "calendar/ICalendarReader.h"

#include "calendar/JoinLink.h"

#include <algorithm>
#include <array>
#include <libical/ical.h>
#include <map>
#include <memory>
#include <set>
#include <tuple>

namespace navro {
namespace {

using Seconds = std::chrono::seconds;

// A rule such as FREQ=SECONDLY from 1970 must not keep the reader busy for ever: past these the
// rest of the rule is given up.
constexpr int maxRuleSteps = 100000;
constexpr std::size_t maxOccurrencesPerEvent = 2000;
constexpr long long secondsPerDay = 24 * 60 * 60;

struct ComponentFree {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
struct IteratorFree {
    void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};

std::string text(const char* value)
{
    return value ? std::string(value) : std::string();
}

// The property's value with the zone its TZID names: the document's VTIMEZONE first, else the
// system's zone of that name. A TZID that names nothing leaves the time floating.
icaltimetype zoned(icaltimetype time, icalproperty* property, icalcomponent* calendar)
{
    if (time.is_date || icaltime_is_utc(time))
        return time;
    icalparameter* parameter = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    const char* tzid = parameter ? icalparameter_get_tzid(parameter) : nullptr;
    if (!tzid || !*tzid)
        return time;
    icaltimezone* zone = icalcomponent_get_timezone(calendar, tzid);
    if (!zone)
        zone = icaltimezone_get_builtin_timezone_from_tzid(tzid);
    if (!zone)
        zone = icaltimezone_get_builtin_timezone(tzid);
    time.zone = zone;
    return time;
}

struct Reader {
    icaltimezone* local;
    time_t from;
    time_t to;

    // Floating times and dates read on the local clock; a date is its first moment.
    time_t utcOf(icaltimetype time) const
    {
        if (time.is_date) {
            time.is_date = 0;
            time.hour = time.minute = time.second = 0;
            time.zone = nullptr;
        }
        // The zone given is the one the time is read in.
        return icaltime_as_timet_with_zone(time, time.zone ? time.zone : local);
    }
};

bool isCancelled(icalcomponent* event)
{
    return icalcomponent_get_status(event) == ICAL_STATUS_CANCELLED;
}

// How long each occurrence lasts: whole days for all-day events, seconds otherwise.
struct Length {
    long long days = 0;
    long long seconds = 0;
};

Length lengthOf(icalcomponent* event, icalcomponent* calendar, icaltimetype start,
                const Reader& reader)
{
    Length length;
    if (icalproperty* endProperty = icalcomponent_get_first_property(event, ICAL_DTEND_PROPERTY)) {
        const icaltimetype end = zoned(icalproperty_get_dtend(endProperty), endProperty, calendar);
        if (start.is_date)
            length.days = (reader.utcOf(end) - reader.utcOf(start)) / secondsPerDay;
        else
            length.seconds = reader.utcOf(end) - reader.utcOf(start);
    } else if (icalproperty* duration =
                   icalcomponent_get_first_property(event, ICAL_DURATION_PROPERTY)) {
        const int total = icaldurationtype_as_int(icalproperty_get_duration(duration));
        if (start.is_date)
            length.days = total / secondsPerDay;
        else
            length.seconds = total;
    }
    // A date without an end is that one day; a time without one is that moment.
    if (start.is_date && length.days < 1)
        length.days = 1;
    length.seconds = std::max(length.seconds, 0LL);
    return length;
}

struct EventTexts {
    std::string uid, title;
    std::optional<std::string> location;
    std::optional<std::string> joinLink;
};

EventTexts textsOf(icalcomponent* event)
{
    EventTexts texts;
    texts.uid = text(icalcomponent_get_uid(event));
    texts.title = text(icalcomponent_get_summary(event));
    const std::string location = text(icalcomponent_get_location(event));
    if (!location.empty())
        texts.location = location;
    std::string url, conference;
    for (icalproperty* property = icalcomponent_get_first_property(event, ICAL_ANY_PROPERTY);
         property; property = icalcomponent_get_next_property(event, ICAL_ANY_PROPERTY)) {
        const std::string name = text(icalproperty_get_property_name(property));
        if (name == "URL")
            url = text(icalproperty_get_value_as_string(property));
        else if (name == "CONFERENCE" || name == "X-GOOGLE-CONFERENCE" ||
                 name == "X-MICROSOFT-SKYPETEAMSMEETINGURL" ||
                 name == "X-MICROSOFT-ONLINEMEETINGCONFLINK")
            conference += text(icalproperty_get_value_as_string(property)) + "\n";
    }
    texts.joinLink =
        findJoinLink({url, location, text(icalcomponent_get_description(event)), conference});
    return texts;
}

// For a rule without a count that starts long before the span, a later start in step with the
// rule, so that the years in between are not walked through one occurrence at a time. Only
// where moving by whole periods cannot change which days the rule gives: daily rules without
// filters and weekly ones whose days include the start's own.
std::optional<icaltimetype> laterStart(const icalrecurrencetype& rule, icaltimetype start,
                                       long long gapDays)
{
    if (rule.count != 0 || rule.by_month[0] != ICAL_RECURRENCE_ARRAY_MAX ||
        rule.by_month_day[0] != ICAL_RECURRENCE_ARRAY_MAX ||
        rule.by_year_day[0] != ICAL_RECURRENCE_ARRAY_MAX ||
        rule.by_set_pos[0] != ICAL_RECURRENCE_ARRAY_MAX ||
        rule.by_week_no[0] != ICAL_RECURRENCE_ARRAY_MAX)
        return std::nullopt;
    long long periodDays = 0;
    if (rule.freq == ICAL_DAILY_RECURRENCE && rule.by_day[0] == ICAL_RECURRENCE_ARRAY_MAX) {
        periodDays = 1;
    } else if (rule.freq == ICAL_WEEKLY_RECURRENCE) {
        bool includesStart = rule.by_day[0] == ICAL_RECURRENCE_ARRAY_MAX;
        for (int i = 0; i < ICAL_BY_DAY_SIZE && rule.by_day[i] != ICAL_RECURRENCE_ARRAY_MAX; ++i)
            includesStart |= int(icalrecurrencetype_day_day_of_week(rule.by_day[i])) ==
                             icaltime_day_of_week(start);
        if (!includesStart)
            return std::nullopt;
        periodDays = 7;
    } else {
        return std::nullopt;
    }
    periodDays *= std::max<long long>(rule.interval, 1);
    const long long periods = gapDays / periodDays;
    if (periods <= 0 || periods > 1000000)
        return std::nullopt;
    icaltime_adjust(&start, int(periods * periodDays), 0, 0, 0);
    return start;
}

using OverrideKey = std::pair<std::string, time_t>; // UID and the occurrence it replaces

class Expander {
public:
    Expander(const Reader& reader, icalcomponent* calendar, std::vector<Meeting>& out)
        : reader_(reader), calendar_(calendar), out_(out)
    {
    }

    void collectOverrides()
    {
        forEachEvent([&](icalcomponent* event) {
            icalproperty* id = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
            if (id)
                replaced_.emplace(
                    text(icalcomponent_get_uid(event)),
                    reader_.utcOf(zoned(icalproperty_get_recurrenceid(id), id, calendar_)));
        });
    }

    void expandAll()
    {
        forEachEvent([&](icalcomponent* event) { expand(event); });
    }

private:
    template <typename Visit> void forEachEvent(Visit visit)
    {
        for (icalcomponent* event =
                 icalcomponent_get_first_component(calendar_, ICAL_VEVENT_COMPONENT);
             event; event = icalcomponent_get_next_component(calendar_, ICAL_VEVENT_COMPONENT))
            visit(event);
    }

    void expand(icalcomponent* event)
    {
        if (isCancelled(event))
            return;
        icalproperty* startProperty =
            icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
        if (!startProperty)
            return;
        const icaltimetype start =
            zoned(icalproperty_get_dtstart(startProperty), startProperty, calendar_);
        if (icaltime_is_null_time(start) || !icaltime_is_valid_time(start))
            return;
        const Length length = lengthOf(event, calendar_, start, reader_);
        const EventTexts texts = textsOf(event);
        std::size_t emitted = 0;
        auto emit = [&](icaltimetype occurrence) {
            if (emitted < maxOccurrencesPerEvent && add(occurrence, length, texts))
                ++emitted;
        };

        // An occurrence moved or changed by RECURRENCE-ID stands for itself, once.
        const bool isOverride =
            icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY) != nullptr;
        icalproperty* ruleProperty = icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY);
        std::set<time_t> seen;
        std::set<time_t> excluded;
        for (icalproperty* exdate = icalcomponent_get_first_property(event, ICAL_EXDATE_PROPERTY);
             exdate; exdate = icalcomponent_get_next_property(event, ICAL_EXDATE_PROPERTY))
            excluded.insert(
                reader_.utcOf(zoned(icalproperty_get_exdate(exdate), exdate, calendar_)));
        auto consider = [&](icaltimetype occurrence) {
            const time_t at = reader_.utcOf(occurrence);
            if (!seen.insert(at).second || excluded.count(at) ||
                (!isOverride && replaced_.count({texts.uid, at})))
                return;
            emit(occurrence);
        };

        if (isOverride ||
            (!ruleProperty && !icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY))) {
            emit(start);
            return;
        }
        consider(start);
        if (ruleProperty)
            walkRule(icalproperty_get_rrule(ruleProperty), start, length, consider);
        for (icalproperty* rdate = icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY);
             rdate; rdate = icalcomponent_get_next_property(event, ICAL_RDATE_PROPERTY)) {
            const icaldatetimeperiodtype value = icalproperty_get_rdate(rdate);
            icaltimetype at = icaltime_is_null_time(value.time) ? value.period.start : value.time;
            if (icaltime_is_null_time(at) || !icaltime_is_valid_time(at))
                continue;
            at = zoned(at, rdate, calendar_);
            consider(at);
        }
    }

    template <typename Consider>
    void walkRule(const icalrecurrencetype& rule, icaltimetype start, const Length& length,
                  Consider& consider)
    {
        // Occurrences that began before the span can still reach into it.
        const long long reach = length.days * secondsPerDay + length.seconds + 2 * secondsPerDay;
        const long long gapDays = (reader_.from - reach - reader_.utcOf(start)) / secondsPerDay;
        icaltimetype first = laterStart(rule, start, gapDays).value_or(start);
        std::unique_ptr<icalrecur_iterator, IteratorFree> iterator(
            icalrecur_iterator_new(rule, first));
        if (!iterator)
            return;
        for (int step = 0; step < maxRuleSteps; ++step) {
            icaltimetype occurrence = icalrecur_iterator_next(iterator.get());
            if (icaltime_is_null_time(occurrence))
                break;
            occurrence.zone = start.zone;
            occurrence.is_date = start.is_date;
            if (reader_.utcOf(occurrence) >= reader_.to)
                break;
            consider(occurrence);
        }
    }

    bool add(icaltimetype occurrence, const Length& length, const EventTexts& texts)
    {
        const time_t begins = reader_.utcOf(occurrence);
        time_t ends = begins + length.seconds;
        if (occurrence.is_date) {
            icaltimetype last = occurrence;
            icaltime_adjust(&last, int(std::min<long long>(length.days, 100000)), 0, 0, 0);
            ends = reader_.utcOf(last);
        }
        const bool overlaps = ends > begins ? ends > reader_.from && begins < reader_.to
                                            : begins >= reader_.from && begins < reader_.to;
        if (!overlaps)
            return false;
        Meeting meeting;
        meeting.id = texts.uid + "@" + std::to_string(begins);
        meeting.title = texts.title;
        meeting.start = WallTime(Seconds(begins));
        meeting.end = WallTime(Seconds(ends));
        meeting.isAllDay = occurrence.is_date != 0;
        meeting.location = texts.location;
        meeting.joinLink = texts.joinLink;
        out_.push_back(std::move(meeting));
        return true;
    }

    const Reader& reader_;
    icalcomponent* calendar_;
    std::vector<Meeting>& out_;
    std::set<OverrideKey> replaced_;
};

void readHeader(icalcomponent* calendar, CalendarReading& reading)
{
    for (icalproperty* property = icalcomponent_get_first_property(calendar, ICAL_ANY_PROPERTY);
         property; property = icalcomponent_get_next_property(calendar, ICAL_ANY_PROPERTY)) {
        const std::string name = text(icalproperty_get_property_name(property));
        const std::string value = text(icalproperty_get_value_as_string(property));
        if (name == "X-WR-CALNAME" && reading.name.empty())
            reading.name = value;
        else if (name == "X-APPLE-CALENDAR-COLOR" && !reading.colour)
            reading.colour = parseHexColour(value);
    }
}

} // namespace

std::optional<std::uint32_t> parseHexColour(std::string_view value)
{
    if ((value.size() != 7 && value.size() != 9) || value[0] != '#')
        return std::nullopt;
    std::uint32_t colour = 0;
    for (char c : value.substr(1, 6)) {
        int digit;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        else
            return std::nullopt;
        colour = colour * 16 + std::uint32_t(digit);
    }
    return colour;
}

CalendarReadResult readICalendar(std::string_view document, WallTime from, WallTime to,
                                 const std::string& localZoneID)
{
    // libical's default is to abort the process on a malformed value.
    icalerror_set_errors_are_fatal(0);
    if (document.find('\0') != std::string_view::npos)
        return {std::nullopt, "not an iCalendar document (it holds binary data)"};
    const std::string terminated(document);
    std::unique_ptr<icalcomponent, ComponentFree> root(icalparser_parse_string(terminated.c_str()));
    if (!root)
        return {std::nullopt, "not an iCalendar document"};

    std::vector<icalcomponent*> calendars;
    if (icalcomponent_isa(root.get()) == ICAL_VCALENDAR_COMPONENT)
        calendars.push_back(root.get());
    else
        for (icalcomponent* child =
                 icalcomponent_get_first_component(root.get(), ICAL_VCALENDAR_COMPONENT);
             child; child = icalcomponent_get_next_component(root.get(), ICAL_VCALENDAR_COMPONENT))
            calendars.push_back(child);
    if (calendars.empty())
        return {std::nullopt, "no VCALENDAR in the document"};

    icaltimezone* local =
        localZoneID.empty() ? nullptr : icaltimezone_get_builtin_timezone(localZoneID.c_str());
    const Reader reader{local ? local : icaltimezone_get_utc_timezone(),
                        time_t(std::chrono::floor<Seconds>(from).time_since_epoch().count()),
                        time_t(std::chrono::ceil<Seconds>(to).time_since_epoch().count())};
    CalendarReading reading;
    for (icalcomponent* calendar : calendars) {
        readHeader(calendar, reading);
        Expander expander(reader, calendar, reading.events);
        expander.collectOverrides();
        expander.expandAll();
    }
    std::sort(reading.events.begin(), reading.events.end(), [](const Meeting& a, const Meeting& b) {
        return std::tie(a.start, a.end, a.title, a.id) < std::tie(b.start, b.end, b.title, b.id);
    });
    return {std::move(reading), {}};
}

} // namespace navro
