#include "prayer/SystemZone.h"

#include "app/FileAccess.h"
#include "app/Log.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <unicode/dtrule.h>
#include <unicode/rbtz.h>
#include <unicode/tzrule.h>
#include <unicode/unistr.h>
#include <vector>

namespace navro {
namespace {

constexpr std::int32_t msPerSecond = 1000;
constexpr const char* systemZoneFolder = "/usr/share/zoneinfo";

// Every real zone file lies far inside these bounds (a few kB, a few hundred changes, a few dozen
// local types). A file beyond them is damaged or hostile, and building a zone from it could keep
// ICU busy for seconds and gigabytes.
constexpr std::size_t maxZoneFileBytes = 64 * 1024;
constexpr std::uint32_t maxTransitions = 2000;
constexpr std::uint32_t maxTypes = 256; // a transition names its type in one byte
constexpr std::uint32_t maxAbbreviationBytes = 512;
constexpr std::uint32_t maxLeapSeconds = 1000;
constexpr std::size_t maxFooterBytes = 256;
// Offsets a zone may have (RFC 8536 3.2), in seconds east of UTC.
constexpr std::int32_t lowestUtcOffset = -89999;
constexpr std::int32_t highestUtcOffset = 93599;
// About 17 000 years either side of 1970, well inside the years std::chrono counts (to 32767):
// a later change would wrap round to a year long past. Older files open with a dummy change at
// -2^59 ("the big bang"); changes outside this span only say which type was in force before the
// first real one.
constexpr std::int64_t earliestTransition = -(std::int64_t(1) << 39);
constexpr std::int64_t latestTransition = std::int64_t(1) << 39;

struct LocalType {
    std::int32_t utcOffset; // seconds
    bool isDst;
    std::string abbreviation;
};

struct Tzif {
    std::vector<std::int64_t> transitions; // seconds since the epoch, strictly ascending
    std::vector<std::uint8_t> typeIndices;
    std::vector<LocalType> types;
    std::size_t initialType = 0; // in force before the first transition
    std::string footer;
};

class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}
    bool has(std::size_t count) const { return bytes_.size() - position_ >= count; }
    std::uint64_t unsignedBigEndian(int size)
    {
        std::uint64_t value = 0;
        for (int i = 0; i < size; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes_[position_++]);
        return value;
    }
    std::int64_t signedBigEndian(int size)
    {
        const auto value = unsignedBigEndian(size);
        if (size == 8)
            return static_cast<std::int64_t>(value);
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
    }
    std::string_view take(std::size_t count)
    {
        auto part = bytes_.substr(position_, count);
        position_ += count;
        return part;
    }
    void skip(std::size_t count) { position_ += count; }
    std::string_view rest() const { return bytes_.substr(position_); }

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
};

struct Counts {
    std::uint32_t isUt, isStd, leap, time, type, chars;
};

std::optional<std::pair<char, Counts>> readHeader(Reader& reader)
{
    if (!reader.has(44) || reader.take(4) != "TZif")
        return std::nullopt;
    const char version = reader.take(1)[0];
    reader.skip(15);
    Counts counts{};
    for (auto* field :
         {&counts.isUt, &counts.isStd, &counts.leap, &counts.time, &counts.type, &counts.chars})
        *field = static_cast<std::uint32_t>(reader.unsignedBigEndian(4));
    // The indicator arrays are either absent or have one entry per type.
    const bool indicatorsFit = (counts.isUt == 0 || counts.isUt == counts.type) &&
                               (counts.isStd == 0 || counts.isStd == counts.type);
    if (counts.time > maxTransitions || counts.type > maxTypes ||
        counts.chars > maxAbbreviationBytes || counts.leap > maxLeapSeconds || !indicatorsFit)
        return std::nullopt;
    return std::pair{version, counts};
}

std::optional<Tzif> parseTzif(std::string_view bytes)
{
    Reader reader(bytes);
    auto header = readHeader(reader);
    if (!header)
        return std::nullopt;
    int timeSize = 4;
    if (header->first >= '2') {
        // Version 2 and later repeat the data with 64-bit times after the 32-bit block.
        const auto& c = header->second;
        const std::size_t v1 =
            c.time * 5ull + c.type * 6ull + c.chars + c.leap * 8ull + c.isStd + c.isUt;
        if (!reader.has(v1))
            return std::nullopt;
        reader.skip(v1);
        header = readHeader(reader);
        if (!header)
            return std::nullopt;
        timeSize = 8;
    }
    const auto c = header->second;
    const std::size_t size = c.time * (timeSize + 1ull) + c.type * 6ull + c.chars +
                             c.leap * (timeSize + 4ull) + c.isStd + c.isUt;
    if (c.type == 0 || !reader.has(size))
        return std::nullopt;

    Tzif tzif;
    std::vector<std::int64_t> times;
    for (std::uint32_t i = 0; i < c.time; ++i) {
        times.push_back(reader.signedBigEndian(timeSize));
        if (i > 0 && times[i] <= times[i - 1])
            return std::nullopt;
    }
    std::vector<std::uint8_t> indices;
    for (std::uint32_t i = 0; i < c.time; ++i) {
        indices.push_back(static_cast<std::uint8_t>(reader.unsignedBigEndian(1)));
        if (indices.back() >= c.type)
            return std::nullopt;
    }
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (times[i] < earliestTransition) {
            tzif.initialType = indices[i];
        } else if (times[i] <= latestTransition) {
            tzif.transitions.push_back(times[i]);
            tzif.typeIndices.push_back(indices[i]);
        }
    }
    std::vector<std::uint8_t> abbreviationIndices;
    for (std::uint32_t i = 0; i < c.type; ++i) {
        const auto offset = static_cast<std::int32_t>(reader.signedBigEndian(4));
        const auto dst = reader.unsignedBigEndian(1);
        abbreviationIndices.push_back(static_cast<std::uint8_t>(reader.unsignedBigEndian(1)));
        if (offset < lowestUtcOffset || offset > highestUtcOffset || dst > 1 ||
            abbreviationIndices.back() >= c.chars)
            return std::nullopt;
        tzif.types.push_back({offset, dst == 1, {}});
    }
    const auto chars = reader.take(c.chars);
    for (std::size_t i = 0; i < tzif.types.size(); ++i) {
        const auto start = abbreviationIndices[i];
        const auto end = chars.find('\0', start);
        if (end == std::string_view::npos)
            return std::nullopt;
        tzif.types[i].abbreviation = std::string(chars.substr(start, end - start));
    }
    reader.skip(c.leap * (timeSize + 4ull) + c.isStd + c.isUt);
    if (timeSize == 8) {
        auto rest = reader.rest().substr(0, maxFooterBytes + 2);
        if (rest.size() >= 2 && rest.front() == '\n') {
            const auto end = rest.find('\n', 1);
            if (end != std::string_view::npos)
                tzif.footer = std::string(rest.substr(1, end - 1));
        }
    }
    return tzif;
}

// The rule after the last listed change, from the POSIX TZ string at the file's end (the same
// syntax as the TZ variable): "STDoffset[DST[offset][,start[/time],end[/time]]]". Only changes
// given as "Mm.w.d" become a rule; a zone without summer time, or with its changes given by day
// of the year, keeps the last listed offset.
struct PosixRule {
    std::int32_t standardOffset = 0; // seconds east of UTC
    std::int32_t dstOffset = 0;
    std::string standardName, dstName;
    bool hasSummerTime = false;
    struct When {
        bool byMonthWeekDay = true; // else by day of the year ("Jn" or "n")
        int month = 0, week = 0, weekday = 0;
        std::int32_t seconds = 2 * 3600;
    } start, end;
};

class PosixParser {
public:
    explicit PosixParser(std::string_view text) : text_(text) {}

    std::optional<PosixRule> parse()
    {
        PosixRule rule;
        auto standardName = name();
        auto standard = offset();
        if (!standardName || !standard)
            return std::nullopt;
        rule.standardName = *standardName;
        rule.standardOffset = -*standard;
        if (done())
            return rule;
        auto dstName = name();
        if (!dstName)
            return std::nullopt;
        rule.dstName = *dstName;
        rule.dstOffset = rule.standardOffset + 3600;
        if (!done() && peek() != ',') {
            auto dst = offset();
            if (!dst)
                return std::nullopt;
            rule.dstOffset = -*dst;
        }
        // "STDoffsetDST" alone means the C library's built-in default changes.
        if (done())
            return rule;
        auto start = when();
        auto end = when();
        if (!start || !end || !done())
            return std::nullopt;
        rule.start = *start;
        rule.end = *end;
        rule.hasSummerTime = true;
        return rule;
    }

private:
    // Longer than any real name or number; also keeps the arithmetic below from overflowing.
    static constexpr std::size_t maxNameLength = 32;
    static constexpr std::size_t maxDigits = 3;

    bool done() const { return position_ >= text_.size(); }
    char peek() const { return done() ? '\0' : text_[position_]; }

    std::optional<std::string> name()
    {
        if (peek() == '<') {
            const auto end = text_.find('>', position_);
            if (end == std::string_view::npos)
                return std::nullopt;
            const auto inside = text_.substr(position_ + 1, end - position_ - 1);
            const bool plain = std::all_of(inside.begin(), inside.end(), [](char c) {
                return std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '-';
            });
            if (inside.size() < 3 || inside.size() > maxNameLength || !plain)
                return std::nullopt;
            position_ = end + 1;
            return std::string(inside);
        }
        const auto start = position_;
        while (!done() && std::isalpha(static_cast<unsigned char>(peek())))
            ++position_;
        const auto length = position_ - start;
        if (length < 3 || length > maxNameLength)
            return std::nullopt;
        return std::string(text_.substr(start, length));
    }

    std::optional<int> number()
    {
        if (!std::isdigit(static_cast<unsigned char>(peek())))
            return std::nullopt;
        int value = 0;
        for (std::size_t digits = 0; std::isdigit(static_cast<unsigned char>(peek())); ++digits) {
            if (digits == maxDigits)
                return std::nullopt;
            value = value * 10 + (text_[position_++] - '0');
        }
        return value;
    }

    // [+-]hh[:mm[:ss]] in seconds, hours below a week as POSIX allows.
    std::optional<std::int32_t> offset()
    {
        int sign = 1;
        if (peek() == '+' || peek() == '-')
            sign = text_[position_++] == '-' ? -1 : 1;
        auto hours = number();
        if (!hours || *hours > 167)
            return std::nullopt;
        std::int32_t total = *hours * 3600;
        for (int unit : {60, 1}) {
            if (peek() != ':')
                break;
            ++position_;
            auto part = number();
            if (!part || *part > 59)
                return std::nullopt;
            total += *part * unit;
        }
        return sign * total;
    }

    bool take(char expected)
    {
        if (peek() != expected)
            return false;
        ++position_;
        return true;
    }

    std::optional<PosixRule::When> when()
    {
        if (!take(','))
            return std::nullopt;
        PosixRule::When result;
        if (take('M')) {
            auto month = number();
            auto week = month && take('.') ? number() : std::nullopt;
            auto weekday = week && take('.') ? number() : std::nullopt;
            if (!weekday || *month < 1 || *month > 12 || *week < 1 || *week > 5 || *weekday > 6)
                return std::nullopt;
            result.month = *month;
            result.week = *week;
            result.weekday = *weekday;
        } else {
            const bool julian = take('J');
            auto day = number();
            if (!day || *day > 365 || (julian && *day == 0))
                return std::nullopt;
            result.byMonthWeekDay = false;
        }
        if (take('/')) {
            // Times of day may lie outside 0-24 h (RFC 8536 allows -167 to 167 hours).
            auto time = offset();
            if (!time)
                return std::nullopt;
            result.seconds = *time;
        }
        return result;
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

icu::DateTimeRule* icuRule(const PosixRule::When& when)
{
    return new icu::DateTimeRule(when.month - 1, when.week == 5 ? -1 : when.week, when.weekday + 1,
                                 when.seconds * msPerSecond, icu::DateTimeRule::WALL_TIME);
}

int yearOf(std::int64_t secondsSinceEpoch)
{
    using namespace std::chrono;
    const auto days = floor<std::chrono::days>(sys_seconds(seconds(secondsSinceEpoch)));
    return int(year_month_day(days).year());
}

std::unique_ptr<icu::TimeZone> build(std::string_view id, const Tzif& tzif)
{
    const auto icuID = icu::UnicodeString::fromUTF8(icu::StringPiece(id.data(), int(id.size())));
    auto text = [](const std::string& s) { return icu::UnicodeString::fromUTF8(s); };

    // ICU wants each offset split into standard and summer parts, which TZif does not keep: a
    // summer offset is measured against the standard offset in force just before it.
    const auto& first = tzif.types[tzif.initialType];
    auto zone = std::make_unique<icu::RuleBasedTimeZone>(
        icuID,
        new icu::InitialTimeZoneRule(text(first.abbreviation), first.utcOffset * msPerSecond, 0));
    struct Key {
        std::int32_t raw, dst;
        std::string name;
        bool operator<(const Key& o) const
        {
            return std::tie(raw, dst, name) < std::tie(o.raw, o.dst, o.name);
        }
    };
    std::map<Key, std::vector<UDate>> starts;
    std::int32_t standard = first.isDst ? first.utcOffset - 3600 : first.utcOffset;
    for (std::size_t i = 0; i < tzif.transitions.size(); ++i) {
        const auto& type = tzif.types[tzif.typeIndices[i]];
        std::int32_t raw = type.utcOffset;
        std::int32_t dst = 0;
        if (type.isDst) {
            dst = type.utcOffset - standard;
            if (dst == 0) {
                dst = 3600;
            }
            raw = type.utcOffset - dst;
        } else {
            standard = type.utcOffset;
        }
        starts[{raw * msPerSecond, dst * msPerSecond, type.abbreviation}].push_back(
            static_cast<UDate>(tzif.transitions[i]) * 1000.0);
    }
    UErrorCode status = U_ZERO_ERROR;
    for (const auto& [key, times] : starts) {
        zone->addTransitionRule(new icu::TimeArrayTimeZoneRule(text(key.name), key.raw, key.dst,
                                                               times.data(), int(times.size()),
                                                               icu::DateTimeRule::UTC_TIME),
                                status);
    }

    const auto rule = PosixParser(tzif.footer).parse();
    const bool annual = rule && rule->hasSummerTime && rule->start.byMonthWeekDay &&
                        rule->end.byMonthWeekDay && U_SUCCESS(status);
    if (annual) {
        const std::int32_t raw = rule->standardOffset * msPerSecond;
        const std::int32_t save = (rule->dstOffset - rule->standardOffset) * msPerSecond;
        if (save > 0) {
            auto annualRules = [&](int startYear) {
                return std::pair{std::make_unique<icu::AnnualTimeZoneRule>(
                                     text(rule->dstName), raw, save, icuRule(rule->start),
                                     startYear, icu::AnnualTimeZoneRule::MAX_YEAR),
                                 std::make_unique<icu::AnnualTimeZoneRule>(
                                     text(rule->standardName), raw, 0, icuRule(rule->end),
                                     startYear, icu::AnnualTimeZoneRule::MAX_YEAR)};
            };
            const int yearAfter =
                tzif.transitions.empty() ? 1970 : yearOf(tzif.transitions.back()) + 1;
            auto [summer, winter] = annualRules(yearAfter);
            // A change's time of day may lie up to a week either side of its day, so the rule's
            // first change can come before the last listed one. ICU then walks back and forth
            // between the two without end; such a rule starts a year later.
            if (!tzif.transitions.empty()) {
                const UDate lastListed = static_cast<UDate>(tzif.transitions.back()) * 1000.0;
                UDate first = 0;
                const bool tooEarly =
                    (summer->getFirstStart(raw, 0, first) && first <= lastListed) ||
                    (winter->getFirstStart(raw, save, first) && first <= lastListed);
                if (tooEarly)
                    std::tie(summer, winter) = annualRules(yearAfter + 1);
            }
            zone->addTransitionRule(summer.release(), status);
            zone->addTransitionRule(winter.release(), status);
        }
    }
    zone->complete(status);
    if (U_FAILURE(status))
        return nullptr;
    return zone;
}

bool plausibleID(std::string_view id)
{
    return !id.empty() && id.front() != '/' && id.find("..") == std::string_view::npos;
}

std::filesystem::path zoneFolder(const char* tzdir)
{
    return tzdir && *tzdir ? std::filesystem::path(tzdir) : std::filesystem::path(systemZoneFolder);
}

// Why a compiled zone file cannot serve, or nothing when it can.
struct ZoneFileState {
    bool missing = false;
    std::optional<std::string> problem;
};

ZoneFileState inspectZoneFile(const std::filesystem::path& file)
{
    const FileRead read = readRegularFile(file, maxZoneFileBytes);
    if (read.status == FileRead::Status::missing)
        return {true, std::nullopt};
    if (!read.ok())
        return {false, read.reason};
    if (!parseTzif(read.bytes))
        return {false, "not a compiled time-zone file"};
    return {};
}

} // namespace

std::unique_ptr<icu::TimeZone> timeZoneFromTzif(std::string_view id, std::string_view bytes)
{
    if (bytes.size() > maxZoneFileBytes)
        return nullptr;
    const auto tzif = parseTzif(bytes);
    if (!tzif)
        return nullptr;
    return build(id, *tzif);
}

std::unique_ptr<icu::TimeZone> systemTimeZone(std::string_view id)
{
    if (!plausibleID(id))
        return nullptr;
    const FileRead read = readRegularFile(zoneFolder(std::getenv("TZDIR")) / id, maxZoneFileBytes);
    if (!read.ok())
        return nullptr;
    return timeZoneFromTzif(id, read.bytes);
}

bool isPosixZoneRule(std::string_view text)
{
    return PosixParser(text).parse().has_value();
}

ZoneSettingCheck checkZoneSetting(const char* tz, const char* tzdir,
                                  const std::filesystem::path& systemZoneFile)
{
    ZoneSettingCheck check;
    auto fallBackFrom = [&](const std::string& why) {
        const ZoneFileState system = inspectZoneFile(systemZoneFile);
        if (system.problem) {
            check.fallback = ZoneSettingCheck::Fallback::utc;
            check.message = why + "; the system zone " + systemZoneFile.string() +
                            " cannot be used either (" + *system.problem + "); using UTC";
        } else {
            check.fallback = ZoneSettingCheck::Fallback::systemZone;
            check.message = why + "; using the system zone";
        }
        return check;
    };

    // Unset (or only ":"): the C library reads the system zone file. Empty: UTC.
    std::string_view name = tz ? tz : "";
    if (name.starts_with(':'))
        name.remove_prefix(1);
    if (!tz || (name.empty() && *tz == ':')) {
        const ZoneFileState system = inspectZoneFile(systemZoneFile);
        if (!system.problem)
            return check;
        check.fallback = ZoneSettingCheck::Fallback::utc;
        check.message = "the system time zone " + systemZoneFile.string() + " cannot be used (" +
                        *system.problem + "); using UTC";
        return check;
    }
    if (name.empty())
        return check;

    const std::string shown = "TZ \"" + excerptForLog(tz, 100) + "\"";
    const std::filesystem::path file =
        name.front() == '/' ? std::filesystem::path(name) : zoneFolder(tzdir) / name;
    const ZoneFileState state = inspectZoneFile(file);
    if (state.problem)
        return fallBackFrom(shown + " is no usable time zone (" +
                            excerptForLog(file.string(), 200) + ": " + *state.problem + ")");
    // No such file: the libraries read the value as a rule of its own ("EST5EDT,M3.2.0,M11.1.0").
    if (state.missing && !isPosixZoneRule(name))
        return fallBackFrom(shown + " names no known time zone");
    return check;
}

std::unique_ptr<icu::TimeZone> knownTimeZone(std::string_view id)
{
    // The system's database first: it follows rule changes that postdate the ICU release.
    if (auto zone = systemTimeZone(id))
        return zone;
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(
        icu::UnicodeString::fromUTF8(icu::StringPiece(id.data(), std::int32_t(id.size())))));
    if (!zone || *zone == icu::TimeZone::getUnknown())
        return nullptr;
    return zone;
}

} // namespace navro
