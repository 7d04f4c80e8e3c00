#pragma once

#include "nowplaying/SessionBus.h"

#include <optional>
#include <string>
#include <vector>

namespace navro {

// One transport command for the player the watcher reports (named by its bus name), or, without
// a name, for the player the watcher would report now.
struct TransportCommand {
    enum class Kind { send, seek, raise };
    Kind kind = Kind::send;
    int number = 2;     // send: 0 play, 1 pause, 2 play/pause, 4 next, 5 previous
    double seconds = 0; // seek: the position to go to
    std::string player; // org.mpris.MediaPlayer2.… or its last part; empty: choose
};

// The command of the arguments after the program name; nothing for a call that is not one.
std::optional<TransportCommand> parseTransportCommand(const std::vector<std::string>& arguments);

// Carries the command out; returns the exit status (0 done, 1 failed with a line on standard
// error).
int runTransportCommand(SessionBus& bus, const TransportCommand& command);

} // namespace navro
