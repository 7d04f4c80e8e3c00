#pragma once

#include <memory>
#include <string_view>
#include <unicode/timezone.h>

namespace navro {

// An ICU time zone built from the operating system's compiled time-zone database (TZif files
// under $TZDIR or /usr/share/zoneinfo). The system copy is updated with the OS, while the copy
// built into ICU is frozen at the library's release: a country that has changed its rules since
// (Egypt brought back summer time in 2023) is only right in the system's copy.
// Null when the file is missing or unreadable; callers then fall back to ICU's own data.
std::unique_ptr<icu::TimeZone> systemTimeZone(std::string_view id);

// The zone of that id from the system's database, else from ICU's own; null when neither knows it.
std::unique_ptr<icu::TimeZone> knownTimeZone(std::string_view id);

// Same as systemTimeZone, reading the TZif bytes given (for tests and for other folders).
std::unique_ptr<icu::TimeZone> timeZoneFromTzif(std::string_view id, std::string_view bytes);

} // namespace navro
