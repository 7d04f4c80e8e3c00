#include "system/DeviceNotices.h"

#include <algorithm>
#include <cmath>

namespace navro {
namespace {

constexpr std::uint32_t green = 0x34C759;
constexpr std::uint32_t orange = 0xFF9F0A;
constexpr std::uint32_t red = 0xFF453A;
constexpr std::uint32_t blue = 0x0A84FF;

const char* symbolOf(DeviceKind kind)
{
    switch (kind) {
    case DeviceKind::usb:
        return "cable.connector";
    case DeviceKind::bluetooth:
        return "bluetooth";
    case DeviceKind::drive:
        return "externaldrive";
    case DeviceKind::display:
        return "display";
    }
    return "circle";
}

// "USB device connected" and its plural, in both languages; Arabic counts after a colon, which
// reads right for every number without its plural forms.
std::string titleOf(DeviceKind kind, DeviceChange change, bool arabic)
{
    const bool on = change == DeviceChange::connected;
    switch (kind) {
    case DeviceKind::usb:
        return arabic ? (on ? "تم توصيل جهاز USB" : "تم فصل جهاز USB")
                      : (on ? "USB device connected" : "USB device disconnected");
    case DeviceKind::bluetooth:
        return arabic ? (on ? "تم توصيل جهاز بلوتوث" : "تم فصل جهاز بلوتوث")
                      : (on ? "Bluetooth device connected" : "Bluetooth device disconnected");
    case DeviceKind::drive:
        return arabic ? (on ? "تم تركيب القرص" : "تم إخراج القرص")
                      : (on ? "Drive mounted" : "Drive ejected");
    case DeviceKind::display:
        return arabic ? (on ? "تم توصيل شاشة" : "تم فصل شاشة")
                      : (on ? "Display connected" : "Display disconnected");
    }
    return {};
}

std::string pluralTitleOf(DeviceKind kind, DeviceChange change, std::size_t count, bool arabic)
{
    const bool on = change == DeviceChange::connected;
    const std::string n = std::to_string(count);
    if (arabic) {
        const char* what = kind == DeviceKind::usb ? (on ? "أجهزة USB موصولة" : "أجهزة USB مفصولة")
                           : kind == DeviceKind::bluetooth
                               ? (on ? "أجهزة بلوتوث موصولة" : "أجهزة بلوتوث مفصولة")
                           : kind == DeviceKind::drive ? (on ? "أقراص مركّبة" : "أقراص مُخرجة")
                                                       : (on ? "شاشات موصولة" : "شاشات مفصولة");
        return std::string(what) + ": " + withArabicDigits(n);
    }
    const char* what = kind == DeviceKind::usb         ? "USB devices"
                       : kind == DeviceKind::bluetooth ? "Bluetooth devices"
                       : kind == DeviceKind::drive     ? "drives"
                                                       : "displays";
    const char* verb = kind == DeviceKind::drive ? (on ? "mounted" : "ejected")
                                                 : (on ? "connected" : "disconnected");
    return n + " " + what + " " + verb;
}

} // namespace

std::vector<PowerEvent> PowerNoticeRule::observe(const PowerReading& reading)
{
    std::vector<PowerEvent> events;
    if (!reading.hasBattery) {
        last_ = reading;
        return events;
    }
    const bool low20 = reading.percentage <= 20;
    const bool low10 = reading.percentage <= 10;
    if (!last_ || !last_->hasBattery) {
        // The baseline: what is already so when Navro starts (or the battery appears) is no news.
        last_ = reading;
        warned20_ = !reading.onCharger && low20;
        warned10_ = !reading.onCharger && low10;
        return events;
    }
    if (reading.onCharger != last_->onCharger) {
        events.push_back(reading.onCharger ? PowerEvent::chargerConnected
                                           : PowerEvent::chargerRemoved);
        if (reading.onCharger)
            warned20_ = warned10_ = false;
    }
    if (!reading.onCharger) {
        if (low10 && !warned10_) {
            events.push_back(PowerEvent::batteryAt10);
            warned10_ = warned20_ = true;
        } else if (low20 && !warned20_) {
            events.push_back(PowerEvent::batteryAt20);
            warned20_ = true;
        }
    }
    last_ = reading;
    return events;
}

DeviceNotice describePowerEvent(PowerEvent event, double percentage, bool arabic)
{
    const long rounded = std::lround(std::clamp(percentage, 0.0, 100.0));
    std::string level = std::to_string(rounded) + "%";
    if (arabic)
        level = withArabicDigits(std::to_string(rounded)) + "٪";
    switch (event) {
    case PowerEvent::chargerConnected:
        return {"battery.100percent.bolt", arabic ? "الشاحن متصل" : "Charger connected", level,
                green};
    case PowerEvent::chargerRemoved:
        return {"battery.75percent", arabic ? "تم فصل الشاحن" : "Charger removed", level,
                std::nullopt};
    case PowerEvent::batteryAt20:
        return {"battery.25percent", arabic ? "البطارية منخفضة" : "Battery low",
                arabic ? "متبقٍ " + level : level + " left", orange};
    case PowerEvent::batteryAt10:
        return {"battery.25percent", arabic ? "البطارية منخفضة جداً" : "Battery very low",
                arabic ? "متبقٍ " + level + "، صِل الشاحن" : level + " left, plug in the charger",
                red};
    }
    return {};
}

DeviceNotice describeDeviceEvents(const std::vector<DeviceEvent>& events, bool arabic)
{
    if (events.empty())
        return {};
    const DeviceEvent& first = events.front();
    const std::uint32_t tint = first.change == DeviceChange::connected ? blue : 0x8E8E93;
    if (events.size() == 1)
        return {symbolOf(first.kind), titleOf(first.kind, first.change, arabic), first.name, tint};

    bool sameKind = true, sameChange = true;
    for (const auto& event : events) {
        sameKind = sameKind && event.kind == first.kind;
        sameChange = sameChange && event.change == first.change;
    }
    // The names that fit on the second line, the rest counted.
    std::string detail;
    std::size_t named = 0;
    for (const auto& event : events) {
        if (event.name.empty() || detail.size() + event.name.size() > 48)
            continue;
        detail += (detail.empty() ? "" : arabic ? "، " : ", ") + event.name;
        ++named;
    }
    if (named < events.size()) {
        const std::string more = std::to_string(events.size() - named);
        detail += named == 0 ? ""
                  : arabic   ? " و" + withArabicDigits(more) + " غيرها"
                             : " and " + more + " more";
    }
    if (sameKind && sameChange)
        return {symbolOf(first.kind),
                pluralTitleOf(first.kind, first.change, events.size(), arabic), detail, tint};
    const std::string n = std::to_string(events.size());
    return {sameKind ? symbolOf(first.kind) : "cable.connector",
            arabic ? "تغيّرت الأجهزة: " + withArabicDigits(n) : n + " device changes", detail, blue};
}

std::string withArabicDigits(std::string text)
{
    std::string out;
    out.reserve(text.size() * 2);
    for (char c : text) {
        if (c >= '0' && c <= '9') {
            // U+0660 + digit, as UTF-8: D9 A0…D9 A9.
            out += char(0xD9);
            out += char(0xA0 + (c - '0'));
        } else {
            out += c;
        }
    }
    return out;
}

DeviceEventBurst::DeviceEventBurst(Clock& clock, Deliver deliver)
    : clock_(clock), deliver_(std::move(deliver)), slot_(clock.makeSlot())
{
}

void DeviceEventBurst::add(DeviceEvent event)
{
    const WallTime now = clock_.now();
    if (pending_.empty())
        firstAt_ = now;
    // The same device coming and going inside one burst is no news at all.
    const auto opposite = std::find_if(pending_.begin(), pending_.end(), [&](const auto& known) {
        return known.kind == event.kind && known.name == event.name && known.change != event.change;
    });
    if (opposite != pending_.end()) {
        pending_.erase(opposite);
        if (pending_.empty()) {
            slot_->cancel();
            return;
        }
    } else {
        pending_.push_back(std::move(event));
    }
    const Duration left = longest - (now - firstAt_);
    slot_->schedule(std::max(Duration(0), std::min(quiet, left)), [this] { flush(); });
}

void DeviceEventBurst::flush()
{
    auto burst = std::move(pending_);
    pending_.clear();
    if (!burst.empty())
        deliver_(std::move(burst));
}

} // namespace navro
