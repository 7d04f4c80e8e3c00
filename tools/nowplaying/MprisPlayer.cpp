#include "nowplaying/MprisPlayer.h"

#include <cmath>

namespace navro {
namespace {

const BusValue* find(const BusProperties& properties, const char* key)
{
    const auto found = properties.find(key);
    return found == properties.end() ? nullptr : &found->second;
}

std::optional<std::string> text(const BusValue* value)
{
    if (const auto* string = value ? std::get_if<std::string>(value) : nullptr)
        return *string;
    return std::nullopt;
}

std::optional<double> number(const BusValue* value)
{
    if (!value)
        return std::nullopt;
    if (const auto* integer = std::get_if<std::int64_t>(value))
        return double(*integer);
    if (const auto* real = std::get_if<double>(value); real && std::isfinite(*real))
        return *real;
    return std::nullopt;
}

// Artists are a list by the standard; some players send one string.
std::vector<std::string> texts(const BusValue* value)
{
    if (!value)
        return {};
    if (const auto* list = std::get_if<std::vector<std::string>>(value))
        return *list;
    if (const auto* string = std::get_if<std::string>(value))
        return {*string};
    return {};
}

std::string joined(const std::vector<std::string>& parts)
{
    std::string out;
    for (const auto& part : parts) {
        if (part.empty())
            continue;
        if (!out.empty())
            out += ", ";
        out += part;
    }
    return out;
}

std::optional<std::string> nonEmpty(const std::optional<std::string>& value)
{
    if (value && !value->empty())
        return value;
    return std::nullopt;
}

std::optional<std::string> nonEmpty(const std::string& value)
{
    return nonEmpty(std::optional(value));
}

} // namespace

void MprisPlayer::applyPlayerProperties(const BusProperties& properties,
                                        const BusProperties* metadata)
{
    if (auto status = text(find(properties, "PlaybackStatus")))
        playbackStatus = *status;
    if (auto value = number(find(properties, "Rate")))
        rate = *value;
    if (auto micros = number(find(properties, "Position")))
        positionMicros = std::int64_t(*micros);
    if (!metadata)
        return;
    // Metadata arrives whole: a key it leaves out is gone.
    title = text(find(*metadata, "xesam:title"));
    album = text(find(*metadata, "xesam:album"));
    artists = texts(find(*metadata, "xesam:artist"));
    artUrl = text(find(*metadata, "mpris:artUrl"));
    trackId = text(find(*metadata, "mpris:trackid"));
    length.reset();
    if (auto micros = number(find(*metadata, "mpris:length")); micros && *micros > 0)
        length = *micros / 1e6;
}

void MprisPlayer::applyApplicationProperties(const BusProperties& properties)
{
    if (auto value = text(find(properties, "Identity")))
        identity = *value;
    if (auto value = text(find(properties, "DesktopEntry")))
        desktopEntry = *value;
}

void MprisPlayer::setPosition(std::int64_t micros, std::int64_t atMillis)
{
    positionMicros = micros;
    positionReadAt = atMillis;
}

PlayerReport MprisPlayer::report() const
{
    PlayerReport report;
    report.title = nonEmpty(title);
    report.artist = joined(artists);
    report.album = album.value_or("");
    report.duration = length.value_or(0);
    if (positionMicros) {
        report.elapsed = double(*positionMicros) / 1e6;
        report.timestamp = positionReadAt;
    }
    // The line protocol knows a rate only while playing; a paused player has rate 0.
    report.rate = isPlaying() ? (rate > 0 ? rate : 1.0) : 0.0;
    if (artUrl && isWebUrl(*artUrl))
        report.artUrl = artUrl;
    std::string bundle = desktopEntry;
    if (bundle.size() > 8 && bundle.ends_with(".desktop"))
        bundle.resize(bundle.size() - 8);
    report.bundle = nonEmpty(bundle);
    report.app = nonEmpty(identity);
    report.player = name;
    report.error = error;
    return report;
}

} // namespace navro
