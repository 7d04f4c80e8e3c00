#include "prayer/SystemZone.h"

#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <unicode/dtrule.h>
#include <unicode/rbtz.h>
#include <unicode/tzrule.h>
#include <unicode/unistr.h>
#include <vector>

namespace navro {
namespace {

constexpr std::int32_t msPerSecond = 1000;

struct LocalType {
    std::int32_t utcOffset; // seconds
    bool isDst;
    std::string abbreviation;
};

struct Tzif {
    std::vector<std::int64_t> transitions; // seconds since the epoch
    std::vector<std::uint8_t> typeIndices;
    std::vector<LocalType> types;
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
    for (std::uint32_t i = 0; i < c.time; ++i)
        tzif.transitions.push_back(reader.signedBigEndian(timeSize));
    for (std::uint32_t i = 0; i < c.time; ++i) {
        tzif.typeIndices.push_back(static_cast<std::uint8_t>(reader.unsignedBigEndian(1)));
        if (tzif.typeIndices.back() >= c.type)
            return std::nullopt;
    }
    std::vector<std::uint8_t> abbreviationIndices;
    for (std::uint32_t i = 0; i < c.type; ++i) {
        const auto offset = static_cast<std::int32_t>(reader.signedBigEndian(4));
        // More than 25 hours either way is no place's clock (RFC 8536), and would overflow the
        // milliseconds the calendar works in.
        if (offset <= -90000 || offset >= 93600)
            return std::nullopt;
        const bool dst = reader.unsignedBigEndian(1) != 0;
        abbreviationIndices.push_back(static_cast<std::uint8_t>(reader.unsignedBigEndian(1)));
        tzif.types.push_back({offset, dst, {}});
    }
    const auto chars = reader.take(c.chars);
    for (std::size_t i = 0; i < tzif.types.size(); ++i) {
        const auto start = std::min<std::size_t>(abbreviationIndices[i], chars.size());
        const auto end = chars.find('\0', start);
        tzif.types[i].abbreviation = std::string(chars.substr(start, end - start));
    }
    reader.skip(c.leap * (timeSize + 4ull) + c.isStd + c.isUt);
    if (timeSize == 8) {
        auto rest = reader.rest();
        if (rest.size() >= 2 && rest.front() == '\n') {
            const auto end = rest.find('\n', 1);
            if (end != std::string_view::npos)
                tzif.footer = std::string(rest.substr(1, end - 1));
        }
    }
    return tzif;
}

// The rule after the last listed change, from the POSIX TZ string at the file's end, for the
// common "STDoffsetDST[offset],Mm.w.d[/time],Mm.w.d[/time]" form. Anything else is left out:
// the last listed offset then simply stays.
struct PosixRule {
    std::int32_t standardOffset; // seconds east of UTC
    std::int32_t dstOffset;
    std::string standardName, dstName;
    struct When {
        int month, week, weekday;
        std::int32_t seconds;
    } start, end;
};

class PosixParser {
public:
    explicit PosixParser(std::string_view text) : text_(text) {}

    std::optional<PosixRule> parse()
    {
        PosixRule rule{};
        auto standardName = name();
        auto standard = offset();
        if (!standardName || !standard)
            return std::nullopt;
        rule.standardName = *standardName;
        rule.standardOffset = -*standard;
        if (done())
            return std::nullopt; // no summer time: nothing to add
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
        auto start = when();
        auto end = when();
        if (!start || !end || !done())
            return std::nullopt;
        rule.start = *start;
        rule.end = *end;
        return rule;
    }

private:
    bool done() const { return position_ >= text_.size(); }
    char peek() const { return done() ? '\0' : text_[position_]; }

    std::optional<std::string> name()
    {
        if (peek() == '<') {
            const auto end = text_.find('>', position_);
            if (end == std::string_view::npos)
                return std::nullopt;
            auto result = std::string(text_.substr(position_ + 1, end - position_ - 1));
            position_ = end + 1;
            return result;
        }
        const auto start = position_;
        while (!done() && std::isalpha(static_cast<unsigned char>(peek())))
            ++position_;
        if (position_ - start < 3)
            return std::nullopt;
        return std::string(text_.substr(start, position_ - start));
    }

    std::optional<int> number()
    {
        if (!std::isdigit(static_cast<unsigned char>(peek())))
            return std::nullopt;
        int value = 0;
        while (std::isdigit(static_cast<unsigned char>(peek())))
            value = value * 10 + (text_[position_++] - '0');
        return value;
    }

    // [+-]hh[:mm[:ss]] in seconds.
    std::optional<std::int32_t> offset()
    {
        int sign = 1;
        if (peek() == '+' || peek() == '-')
            sign = text_[position_++] == '-' ? -1 : 1;
        auto hours = number();
        if (!hours)
            return std::nullopt;
        std::int32_t total = *hours * 3600;
        for (int unit : {60, 1}) {
            if (peek() != ':')
                break;
            ++position_;
            auto part = number();
            if (!part)
                return std::nullopt;
            total += *part * unit;
        }
        return sign * total;
    }

    std::optional<PosixRule::When> when()
    {
        if (peek() != ',')
            return std::nullopt;
        ++position_;
        if (peek() != 'M')
            return std::nullopt;
        ++position_;
        auto month = number();
        if (!month || peek() != '.')
            return std::nullopt;
        ++position_;
        auto week = number();
        if (!week || peek() != '.')
            return std::nullopt;
        ++position_;
        auto weekday = number();
        if (!weekday || *month < 1 || *month > 12 || *week < 1 || *week > 5 || *weekday > 6)
            return std::nullopt;
        std::int32_t seconds = 2 * 3600;
        if (peek() == '/') {
            ++position_;
            auto time = offset();
            if (!time || *time < 0 || *time > 24 * 3600)
                return std::nullopt;
            seconds = *time;
        }
        return PosixRule::When{*month, *week, *weekday, seconds};
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
    const auto& first = tzif.types.front();
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

    if (auto rule = PosixParser(tzif.footer).parse(); rule && U_SUCCESS(status)) {
        const int startYear = tzif.transitions.empty() ? 1970 : yearOf(tzif.transitions.back()) + 1;
        const std::int32_t raw = rule->standardOffset * msPerSecond;
        const std::int32_t save = (rule->dstOffset - rule->standardOffset) * msPerSecond;
        if (save > 0) {
            zone->addTransitionRule(new icu::AnnualTimeZoneRule(text(rule->dstName), raw, save,
                                                                icuRule(rule->start), startYear,
                                                                icu::AnnualTimeZoneRule::MAX_YEAR),
                                    status);
            zone->addTransitionRule(new icu::AnnualTimeZoneRule(text(rule->standardName), raw, 0,
                                                                icuRule(rule->end), startYear,
                                                                icu::AnnualTimeZoneRule::MAX_YEAR),
                                    status);
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

} // namespace

std::unique_ptr<icu::TimeZone> timeZoneFromTzif(std::string_view id, std::string_view bytes)
{
    const auto tzif = parseTzif(bytes);
    if (!tzif)
        return nullptr;
    return build(id, *tzif);
}

std::unique_ptr<icu::TimeZone> systemTimeZone(std::string_view id)
{
    if (!plausibleID(id))
        return nullptr;
    const char* folder = std::getenv("TZDIR");
    std::string path = folder && *folder ? folder : "/usr/share/zoneinfo";
    path += '/';
    path += id;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return nullptr;
    const std::string bytes((std::istreambuf_iterator<char>(file)),
                            std::istreambuf_iterator<char>());
    return timeZoneFromTzif(id, bytes);
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
