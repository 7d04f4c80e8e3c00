#pragma once

#include <optional>
#include <string_view>

namespace navro {

// The values a numeric setting can take where it is used. The settings keep whatever the file or
// a view gives them; the code that acts on a value bounds it here, to what its control offers ten
// times over: never an infinity, a NaN or a negative wait.
struct SettingRange {
    std::string_view key;
    double lowest;
    double highest;
    double fallback; // for a value that is no number at all (NaN): the setting's default
};

// Seconds; the slider offers 0 to 1.
inline constexpr SettingRange hoverDelayRange{"hoverDelay", 0.0, 10.0, 0.15};
// Minutes; the Timer tab offers 1 to 90 and a number of the user's own, and a timer runs a day at
// most.
inline constexpr SettingRange lastTimerMinutesRange{"lastTimerMinutes", 1.0, 24.0 * 60, 25.0};
// Entries; the settings offer 10 to 500, and the history never keeps fewer than 10.
inline constexpr SettingRange clipboardLimitRange{"clipboardLimit", 10.0, 5000.0, 200.0};

// One setting as its user reads it: the value inside the range, or the nearer end of it. A value
// outside is logged once with the key, the value read and the value used; reading it again says
// nothing more, until another value is read.
class BoundedSetting {
public:
    explicit BoundedSetting(const SettingRange& range) : range_(range) {}

    double use(double value);

private:
    SettingRange range_;
    std::optional<double> reported_;
    bool reportedNaN_ = false;
};

} // namespace navro
