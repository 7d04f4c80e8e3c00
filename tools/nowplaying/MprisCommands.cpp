#include "nowplaying/MprisCommands.h"

#include "app/Log.h"
#include "nowplaying/PlayerChoice.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace navro {
namespace {

const char* methodFor(int number)
{
    switch (number) {
    case 0:
        return "Play";
    case 1:
        return "Pause";
    case 2:
        return "PlayPause";
    case 4:
        return "Next";
    case 5:
        return "Previous";
    default:
        return nullptr;
    }
}

int fail(const std::string& message)
{
    std::fprintf(stderr, "%s\n", message.c_str());
    return 1;
}

std::optional<double> parseNumber(const std::string& text)
{
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() ||
        !std::isfinite(value))
        return std::nullopt;
    return value;
}

// The player named, or the one the watcher would report: a playing one before the others.
std::optional<std::string> resolvePlayer(SessionBus& bus, const std::string& requested,
                                         std::string& failure)
{
    if (!requested.empty()) {
        const std::string name =
            requested.starts_with(mprisPrefix) ? requested : mprisPrefix + requested;
        if (!bus.ownerOf(name)) {
            failure = "no media player " + excerptForLog(name) + " on the session bus";
            return std::nullopt;
        }
        return name;
    }
    PlayerChoice choice;
    for (const std::string& name : bus.mediaPlayers(failure)) {
        std::string ignored;
        const auto status = bus.get(name, mprisPlayerInterface, "PlaybackStatus", ignored);
        const auto* text = status ? std::get_if<std::string>(&*status) : nullptr;
        choice.setPlaying(name, text && *text == "Playing");
    }
    auto chosen = choice.chosen();
    if (!chosen && failure.empty())
        failure = "no media player on the session bus";
    return chosen;
}

int seek(SessionBus& bus, const std::string& player, double seconds)
{
    const auto target = std::int64_t(std::llround(std::max(seconds, 0.0) * 1e6));
    std::string failure;
    const auto metadata = [&]() -> std::optional<BusProperties> {
        SessionBus::Message reply = bus.call(
            player, mprisPath, "org.freedesktop.DBus.Properties", "Get",
            [](sd_bus_message* m) {
                return sd_bus_message_append(m, "ss", mprisPlayerInterface, "Metadata");
            },
            failure);
        std::optional<BusProperties> nested;
        if (reply && sd_bus_message_enter_container(reply.get(), 'v', "a{sv}") >= 0)
            nested = readProperties(reply.get(), nullptr);
        return nested;
    }();
    const auto found = metadata ? metadata->find("mpris:trackid") : BusProperties::const_iterator{};
    const auto* trackId =
        metadata && found != metadata->end() ? std::get_if<std::string>(&found->second) : nullptr;
    // SetPosition needs the track's id and a valid object path; without them, a relative Seek
    // from the position read now does the same.
    if (trackId && sd_bus_object_path_is_valid(trackId->c_str()) &&
        *trackId != "/org/mpris/MediaPlayer2/TrackList/NoTrack") {
        if (bus.call(
                player, mprisPath, mprisPlayerInterface, "SetPosition",
                [&](sd_bus_message* m) {
                    return sd_bus_message_append(m, "ox", trackId->c_str(), target);
                },
                failure))
            return 0;
        return fail(failure);
    }
    const auto position = bus.get(player, mprisPlayerInterface, "Position", failure);
    const auto* micros = position ? std::get_if<std::int64_t>(&*position) : nullptr;
    if (!micros)
        return fail(failure.empty() ? "the position of " + player + " is unknown" : failure);
    const std::int64_t offset = target - *micros;
    if (bus.call(
            player, mprisPath, mprisPlayerInterface, "Seek",
            [&](sd_bus_message* m) { return sd_bus_message_append(m, "x", offset); }, failure))
        return 0;
    return fail(failure);
}

int raise(SessionBus& bus, const std::string& player)
{
    std::string failure;
    const auto canRaise = bus.get(player, mprisApplicationInterface, "CanRaise", failure);
    const auto* can = canRaise ? std::get_if<bool>(&*canRaise) : nullptr;
    if (!can || !*can)
        return fail(player + " cannot bring its window forward");
    if (bus.call(player, mprisPath, mprisApplicationInterface, "Raise", nullptr, failure))
        return 0;
    return fail(failure);
}

} // namespace

std::optional<TransportCommand> parseTransportCommand(const std::vector<std::string>& arguments)
{
    if (arguments.empty())
        return std::nullopt;
    TransportCommand command;
    std::size_t next = 1;
    if (arguments[0] == "send" && arguments.size() >= 2) {
        const auto number = parseNumber(arguments[1]);
        if (!number || *number < 0 || *number > 5 || *number != std::floor(*number) ||
            !methodFor(int(*number)))
            return std::nullopt;
        command.kind = TransportCommand::Kind::send;
        command.number = int(*number);
        next = 2;
    } else if (arguments[0] == "seek" && arguments.size() >= 2) {
        const auto seconds = parseNumber(arguments[1]);
        if (!seconds || *seconds < 0)
            return std::nullopt;
        command.kind = TransportCommand::Kind::seek;
        command.seconds = *seconds;
        next = 2;
    } else if (arguments[0] == "raise") {
        command.kind = TransportCommand::Kind::raise;
    } else {
        return std::nullopt;
    }
    if (next == arguments.size())
        return command;
    if (next + 2 == arguments.size() && arguments[next] == "--player" &&
        !arguments[next + 1].empty()) {
        command.player = arguments[next + 1];
        return command;
    }
    return std::nullopt;
}

int runTransportCommand(SessionBus& bus, const TransportCommand& command)
{
    std::string failure;
    const auto player = resolvePlayer(bus, command.player, failure);
    if (!player)
        return fail(failure);
    switch (command.kind) {
    case TransportCommand::Kind::send:
        if (bus.call(*player, mprisPath, mprisPlayerInterface, methodFor(command.number), nullptr,
                     failure))
            return 0;
        return fail(failure);
    case TransportCommand::Kind::seek:
        return seek(bus, *player, command.seconds);
    case TransportCommand::Kind::raise:
        return raise(bus, *player);
    }
    return 1;
}

} // namespace navro
