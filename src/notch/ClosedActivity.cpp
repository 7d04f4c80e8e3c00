#include "notch/ClosedActivity.h"

namespace navro {

std::optional<Prayer> ClosedActivity::prayer() const
{
    if (const auto* soon = std::get_if<PrayerSoon>(&payload_))
        return soon->prayer;
    if (const auto* now = std::get_if<PrayerNow>(&payload_))
        return now->prayer;
    return std::nullopt;
}

std::optional<WallTime> ClosedActivity::prayerTime() const
{
    if (const auto* soon = std::get_if<PrayerSoon>(&payload_))
        return soon->at;
    return std::nullopt;
}

std::string_view rawValue(ClosedActivity::Kind kind)
{
    switch (kind) {
    case ClosedActivity::Kind::toast:
        return "toast";
    case ClosedActivity::Kind::meeting:
        return "meeting";
    case ClosedActivity::Kind::prayerSoon:
        return "prayerSoon";
    case ClosedActivity::Kind::prayerNow:
        return "prayerNow";
    case ClosedActivity::Kind::recording:
        return "recording";
    case ClosedActivity::Kind::timer:
        return "timer";
    case ClosedActivity::Kind::transfer:
        return "transfer";
    case ClosedActivity::Kind::music:
        return "music";
    }
    return "";
}

} // namespace navro
