#pragma once

#include <optional>
#include <string_view>

namespace navro {

// The values a numeric setting can take where it is used. The settings keep whatever the file or
// a view gives them; the code that acts on a value bounds it here, to what its control offers ten
// times over: never an infinity, a NaN or a negative wait.
struct SettingRange {
    enum class Outside {
        nearerEnd, // a value past an end is taken as that end
        fallback,  // a value outside means nothing: the default serves
    };
    std::string_view key;
    double lowest;
    double highest;
    double fallback; // the setting's default: for NaN, and for any value outside with `fallback`
    Outside outside = Outside::nearerEnd;
};

// Seconds; the slider offers 0 to 1.
inline constexpr SettingRange hoverDelayRange{"hoverDelay", 0.0, 10.0, 0.15};
// Minutes; the Timer tab offers 1 to 90 and a number of the user's own in hundredths of a minute,
// and a timer runs a day at most. A length no timer can have is no hint of one the user wants.
inline constexpr SettingRange lastTimerMinutesRange{"lastTimerMinutes", 0.01, 24.0 * 60, 25.0,
                                                    SettingRange::Outside::fallback};
// Entries; the settings offer 10 to 500, and the history never keeps fewer than 10.
inline constexpr SettingRange clipboardLimitRange{"clipboardLimit", 10.0, 5000.0, 200.0};

// One setting as its user reads it: the value inside the range, else what the range says. A
// value outside is logged once with the key, the value read and the value used; reading it again
// says nothing more, until another value is read.
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
