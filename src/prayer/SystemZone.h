#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unicode/timezone.h>

namespace navro {

// An ICU time zone built from the operating system's compiled time-zone database (TZif files
// under $TZDIR or /usr/share/zoneinfo). The system copy is updated with the OS, while the copy
// built into ICU is frozen at the library's release: a country that has changed its rules since
// (Egypt brought back summer time in 2023) is only right in the system's copy.
// Null when the file is missing, is not a regular file of a few kB, or does not hold a valid zone;
// callers then fall back to ICU's own data.
std::unique_ptr<icu::TimeZone> systemTimeZone(std::string_view id);

// The zone of that id from the system's database, else from ICU's own; null when neither knows it.
std::unique_ptr<icu::TimeZone> knownTimeZone(std::string_view id);

// Same as systemTimeZone, reading the TZif bytes given (for tests and for other folders).
std::unique_ptr<icu::TimeZone> timeZoneFromTzif(std::string_view id, std::string_view bytes);

// Whether `text` is a zone written out as a POSIX rule, as the TZ variable may be:
// "STDoffset[DST[offset][,start[/time],end[/time]]]".
bool isPosixZoneRule(std::string_view text);

// What the C library, Qt and ICU will make of the TZ and TZDIR variables. They read the file that
// TZ names as soon as anything asks for local time, and a folder, a FIFO or a device there makes
// them abort, block or read forever; such a value, or one naming no zone at all, is to be replaced
// before any of them looks.
struct ZoneSettingCheck {
    enum class Fallback {
        none,       // TZ can stay as it is
        systemZone, // unset TZ: the system zone file serves
        utc,        // the system zone file is unusable too: set TZ to UTC
    };
    Fallback fallback = Fallback::none;
    std::string message; // one log line naming the value and what is used instead
};
ZoneSettingCheck checkZoneSetting(const char* tz, const char* tzdir,
                                  const std::filesystem::path& systemZoneFile = "/etc/localtime");

} // namespace navro
