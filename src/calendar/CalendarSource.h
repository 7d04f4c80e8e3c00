#pragma once

#include <QString>
#include <filesystem>
#include <vector>

namespace navro {

// One of the user's calendars: where its iCalendar document comes from and how it is shown.
struct CalendarSource {
    enum class Kind { link, file, evolution };

    QString id; // stable: an upper-case UUID, or "evolution:<folder>" for one found there
    Kind kind = Kind::file;
    QString location; // the http(s) address, or the file's path
    QString name;     // the user's own name for it; empty shows the calendar's own name
    bool enabled = true;

    bool operator==(const CalendarSource&) const = default;
};

QString rawValue(CalendarSource::Kind kind);

// The settings' JSON array of sources. Entries that make no sense (no id, no location, an
// unknown kind) are left out; `malformed` says whether the text as a whole was unreadable.
std::vector<CalendarSource> decodeCalendarSources(const QString& json, bool* malformed = nullptr);
QString encodeCalendarSources(const std::vector<CalendarSource>& sources);

// Evolution's local calendars: <dataHome>/evolution/calendar/<folder>/calendar.ics, by folder.
std::vector<CalendarSource> findEvolutionCalendars(const std::filesystem::path& dataHome);

// http, https and webcal addresses with a host, webcal read as https; empty for anything else.
QString subscriptionAddress(const QString& typed);

} // namespace navro
