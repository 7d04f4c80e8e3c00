#include "nowplaying/MprisWatcher.h"

#include "app/FileAccess.h"
#include "app/Log.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace navro {
namespace {

// Covers are tens or hundreds of kilobytes; a larger file is not worth a line of its size.
constexpr std::size_t maxCoverBytes = 4 * 1024 * 1024;

std::int64_t nowMillis()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

void warn(const std::string& message)
{
    std::fprintf(stderr, "%s\n", message.c_str());
}

// The whole line, or false when the reader is gone.
bool writeLine(std::string_view line)
{
    while (!line.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, line.data(), line.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        line.remove_prefix(std::size_t(written));
    }
    return true;
}

} // namespace

MprisWatcher::MprisWatcher(SessionBus& bus) : bus_(bus) {}

MprisWatcher::~MprisWatcher()
{
    for (sd_bus_slot* slot : slots_)
        sd_bus_slot_unref(slot);
}

int MprisWatcher::run()
{
    std::string failure;
    // Subscribed before the players are listed, so that none can arrive unseen in between.
    if (!subscribe(failure)) {
        warn(failure);
        return 1;
    }
    const std::vector<std::string> names = bus_.mediaPlayers(failure);
    if (!failure.empty())
        warn(failure);
    for (const std::string& name : names)
        if (auto owner = bus_.ownerOf(name))
            addPlayer(name, *owner);
    publish();

    sd_bus* bus = bus_.handle();
    while (!outputClosed_) {
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0) {
            warn(std::string("lost the session bus: ") + SessionBus::describe({}, processed));
            return 1;
        }
        if (processed > 0)
            continue;
        const int waited = sd_bus_wait(bus, UINT64_MAX);
        if (waited < 0 && waited != -EINTR) {
            warn(std::string("lost the session bus: ") + SessionBus::describe({}, waited));
            return 1;
        }
    }
    return 0;
}

bool MprisWatcher::subscribe(std::string& failure)
{
    sd_bus* bus = bus_.handle();
    const struct {
        const char* rule;
        sd_bus_message_handler_t handler;
    } matches[] = {
        {"type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
         "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
         "arg0namespace='org.mpris.MediaPlayer2'",
         &MprisWatcher::onNameOwnerChanged},
        {"type='signal',path='/org/mpris/MediaPlayer2',"
         "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged'",
         &MprisWatcher::onPropertiesChanged},
        {"type='signal',path='/org/mpris/MediaPlayer2',interface='org.mpris.MediaPlayer2.Player',"
         "member='Seeked'",
         &MprisWatcher::onSeeked},
    };
    for (std::size_t i = 0; i < std::size(matches); ++i) {
        const int result =
            sd_bus_add_match(bus, &slots_[i], matches[i].rule, matches[i].handler, this);
        if (result < 0) {
            failure =
                "could not subscribe to media player signals: " + SessionBus::describe({}, result);
            return false;
        }
    }
    return true;
}

int MprisWatcher::onNameOwnerChanged(sd_bus_message* message, void* self, sd_bus_error*)
{
    auto& watcher = *static_cast<MprisWatcher*>(self);
    const char *name = nullptr, *oldOwner = nullptr, *newOwner = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &oldOwner, &newOwner) < 0 || !name)
        return 0;
    const std::string player(name);
    if (!player.starts_with(mprisPrefix))
        return 0;
    if (oldOwner && *oldOwner)
        watcher.removePlayer(player);
    if (newOwner && *newOwner)
        watcher.addPlayer(player, newOwner);
    watcher.publish();
    return 0;
}

int MprisWatcher::onPropertiesChanged(sd_bus_message* message, void* self, sd_bus_error*)
{
    auto& watcher = *static_cast<MprisWatcher*>(self);
    MprisPlayer* player = watcher.playerOwnedBy(sd_bus_message_get_sender(message));
    const char* interface = nullptr;
    if (!player || sd_bus_message_read(message, "s", &interface) < 0 || !interface)
        return 0;
    const std::string_view which(interface);
    std::optional<BusProperties> metadata;
    const auto changed = readProperties(message, &metadata);
    if (!changed) {
        player->error = "a PropertiesChanged signal of " + player->name + " could not be read";
    } else if (which == mprisPlayerInterface) {
        player->applyPlayerProperties(*changed, metadata ? &*metadata : nullptr);
        // Properties a player only names as changed are read again.
        char** invalidated = nullptr;
        if (sd_bus_message_read_strv(message, &invalidated) >= 0 && invalidated) {
            bool any = false;
            for (char** name = invalidated; *name; ++name) {
                any = true;
                std::free(*name);
            }
            std::free(invalidated);
            if (any) {
                std::string failure;
                std::optional<BusProperties> fresh;
                if (auto all =
                        watcher.bus_.getAll(player->name, mprisPlayerInterface, fresh, failure))
                    player->applyPlayerProperties(*all, fresh ? &*fresh : nullptr);
            }
        }
        watcher.choice_.setPlaying(player->name, player->isPlaying());
    } else if (which == mprisApplicationInterface) {
        player->applyApplicationProperties(*changed);
    } else {
        return 0;
    }
    watcher.readPosition(*player);
    watcher.publish();
    return 0;
}

int MprisWatcher::onSeeked(sd_bus_message* message, void* self, sd_bus_error*)
{
    auto& watcher = *static_cast<MprisWatcher*>(self);
    MprisPlayer* player = watcher.playerOwnedBy(sd_bus_message_get_sender(message));
    std::int64_t position = 0;
    if (!player || sd_bus_message_read(message, "x", &position) < 0)
        return 0;
    player->setPosition(position, nowMillis());
    watcher.publish();
    return 0;
}

void MprisWatcher::addPlayer(const std::string& name, const std::string& owner)
{
    MprisPlayer& player = players_[name];
    player = MprisPlayer{};
    player.name = name;
    player.owner = owner;
    std::string failure;
    std::optional<BusProperties> metadata;
    if (auto properties = bus_.getAll(name, mprisPlayerInterface, metadata, failure))
        player.applyPlayerProperties(*properties, metadata ? &*metadata : nullptr);
    else
        player.error = failure;
    std::optional<BusProperties> unused;
    if (auto properties = bus_.getAll(name, mprisApplicationInterface, unused, failure))
        player.applyApplicationProperties(*properties);
    // GetAll includes Position; its moment is now.
    if (player.positionMicros)
        player.positionReadAt = nowMillis();
    choice_.appeared(name);
    choice_.setPlaying(name, player.isPlaying());
}

void MprisWatcher::removePlayer(const std::string& name)
{
    players_.erase(name);
    choice_.vanished(name);
}

MprisPlayer* MprisWatcher::playerOwnedBy(const char* owner)
{
    if (!owner)
        return nullptr;
    for (auto& [name, player] : players_)
        if (player.owner == owner)
            return &player;
    return nullptr;
}

void MprisWatcher::readPosition(MprisPlayer& player)
{
    std::string failure;
    const auto value = bus_.get(player.name, mprisPlayerInterface, "Position", failure);
    if (!value) {
        player.error = "could not read the position: " + failure;
        return;
    }
    if (const auto* micros = std::get_if<std::int64_t>(&*value)) {
        player.setPosition(*micros, nowMillis());
        player.error.reset();
    } else if (const auto* real = std::get_if<double>(&*value); real && std::isfinite(*real)) {
        player.setPosition(std::int64_t(*real), nowMillis());
        player.error.reset();
    }
}

std::optional<std::string> MprisWatcher::coverBytes(const MprisPlayer& player)
{
    if (!player.artUrl)
        return std::nullopt;
    const std::string title = player.title.value_or("");
    if (cover_.url == *player.artUrl && cover_.title == title)
        return cover_.bytes;
    cover_ = Cover{*player.artUrl, title, std::nullopt};
    const auto path = localPathOfUrl(*player.artUrl);
    if (!path)
        return std::nullopt;
    FileRead read = readRegularFile(*path, maxCoverBytes);
    if (!read.ok()) {
        warn("the cover " + excerptForLog(*path) + " of " + player.name +
             " could not be read: " + read.reason);
        return std::nullopt;
    }
    cover_.bytes = std::move(read.bytes);
    return cover_.bytes;
}

void MprisWatcher::publish()
{
    PlayerReport report;
    if (const auto chosen = choice_.chosen()) {
        const MprisPlayer& player = players_[*chosen];
        report = player.report();
        report.artworkBytes = coverBytes(player);
    }
    if (const auto line = printer_.next(report))
        if (!writeLine(*line))
            outputClosed_ = true;
}

} // namespace navro
