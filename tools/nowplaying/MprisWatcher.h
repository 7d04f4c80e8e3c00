#pragma once

#include "nowplaying/MprisPlayer.h"
#include "nowplaying/PlayerChoice.h"
#include "nowplaying/SessionBus.h"

#include <map>
#include <optional>
#include <string>

namespace navro {

// Follows every media player on the session bus and prints the line protocol for the one that
// matters (PlayerChoice). It wakes only for the bus: players appearing and leaving, their
// PropertiesChanged and Seeked signals. The position is read when a player's signal arrives and
// never polled; Navro extrapolates it in between.
class MprisWatcher {
public:
    explicit MprisWatcher(SessionBus& bus);
    ~MprisWatcher();
    MprisWatcher(const MprisWatcher&) = delete;
    MprisWatcher& operator=(const MprisWatcher&) = delete;

    // Subscribes, reads the players already there and prints the first line on standard output.
    // Runs until the bus is lost or the reader of the output is gone; returns the exit status.
    int run();

private:
    static int onNameOwnerChanged(sd_bus_message* message, void* self, sd_bus_error*);
    static int onPropertiesChanged(sd_bus_message* message, void* self, sd_bus_error*);
    static int onSeeked(sd_bus_message* message, void* self, sd_bus_error*);

    bool subscribe(std::string& failure);
    void addPlayer(const std::string& name, const std::string& owner);
    void removePlayer(const std::string& name);
    MprisPlayer* playerOwnedBy(const char* owner);
    void readPosition(MprisPlayer& player);
    void publish();
    std::optional<std::string> coverBytes(const MprisPlayer& player);

    SessionBus& bus_;
    sd_bus_slot* slots_[3] = {};
    std::map<std::string, MprisPlayer> players_;
    PlayerChoice choice_;
    LinePrinter printer_;
    // The cover file last read, so that a signal that changes nothing else reads no file.
    struct Cover {
        std::string url, title;
        std::optional<std::string> bytes;
    } cover_;
    bool outputClosed_ = false;
};

} // namespace navro
