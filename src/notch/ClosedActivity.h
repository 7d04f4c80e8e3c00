#pragma once

#include "app/Clock.h"
#include "notch/Meeting.h"
#include "notch/Toast.h"
#include "prayer/Prayer.h"

#include <string_view>
#include <variant>

namespace navro {

// What the closed notch shows at its sides. Two activities are equal when they are the same kind
// with equal payloads (a toast compares its id too).
class ClosedActivity {
public:
    // Declaration order is the order of the payload alternatives below.
    enum class Kind { toast, meeting, prayerSoon, prayerNow, recording, timer, transfer, music };

    static ClosedActivity ofToast(Toast toast) { return ClosedActivity(std::move(toast)); }
    static ClosedActivity ofMeeting(Meeting meeting) { return ClosedActivity(std::move(meeting)); }
    static ClosedActivity prayerSoon(Prayer prayer, WallTime at)
    {
        return ClosedActivity(PrayerSoon{prayer, at});
    }
    static ClosedActivity prayerNow(Prayer prayer) { return ClosedActivity(PrayerNow{prayer}); }
    static ClosedActivity recording() { return ClosedActivity(Plain<Kind::recording>{}); }
    static ClosedActivity timer() { return ClosedActivity(Plain<Kind::timer>{}); }
    static ClosedActivity transfer() { return ClosedActivity(Plain<Kind::transfer>{}); }
    static ClosedActivity music() { return ClosedActivity(Plain<Kind::music>{}); }

    Kind kind() const { return static_cast<Kind>(payload_.index()); }

    // The payload of the matching kind, or null.
    const Toast* toast() const { return std::get_if<Toast>(&payload_); }
    const Meeting* meeting() const { return std::get_if<Meeting>(&payload_); }
    std::optional<Prayer> prayer() const;
    std::optional<WallTime> prayerTime() const;

    bool operator==(const ClosedActivity&) const = default;

private:
    struct PrayerSoon {
        Prayer prayer;
        WallTime at;
        bool operator==(const PrayerSoon&) const = default;
    };
    struct PrayerNow {
        Prayer prayer;
        bool operator==(const PrayerNow&) const = default;
    };
    template <Kind> struct Plain {
        bool operator==(const Plain&) const = default;
    };
    using Payload = std::variant<Toast, Meeting, PrayerSoon, PrayerNow, Plain<Kind::recording>,
                                 Plain<Kind::timer>, Plain<Kind::transfer>, Plain<Kind::music>>;

    template <typename T> explicit ClosedActivity(T payload) : payload_(std::move(payload)) {}

    Payload payload_;
};

// The kind's name as views and the control interface see it ("toast", "prayerSoon", ...).
std::string_view rawValue(ClosedActivity::Kind kind);

} // namespace navro
