#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// One day of anonymous counts: how often Navro started, which tabs were opened and which features
// were used, and the interface language. Nothing typed, copied, played or located.
struct UsageDay {
    std::string date; // local "YYYY-MM-DD"
    int launches = 0;
    std::map<std::string, int> tabsOpened;
    std::map<std::string, int> featuresUsed;
    std::string language; // "english" or "arabic"

    bool operator==(const UsageDay&) const = default;
};

// What "usage.json" in the data folder keeps: the days not sent yet, oldest first, and the day
// of the last report that reached the server.
struct UsageRecord {
    std::vector<UsageDay> days;
    std::string lastSent; // "YYYY-MM-DD", empty for never

    bool operator==(const UsageRecord&) const = default;

    // The day `date`, added after the others when it is new. At most maxUsageDays are kept: a
    // machine that cannot reach the server for months drops its oldest days.
    UsageDay& day(const std::string& date);
};

inline constexpr std::size_t maxUsageDays = 31;
// Names of tabs and features are Navro's own words; anything longer or stranger in the file is
// damage.
inline constexpr std::size_t maxUsageNameBytes = 40;

std::string encodeUsageRecord(const UsageRecord& record);

struct UsageRecordDecoding {
    std::optional<UsageRecord> record;
    std::string error; // why there is none, fit for a log line
};

UsageRecordDecoding decodeUsageRecord(std::string_view bytes);

// The one document a report sends, exactly as sent: the application's version and the days.
std::string usageReport(const std::vector<UsageDay>& days, std::string_view version);

bool isUsageName(std::string_view name);

} // namespace navro
