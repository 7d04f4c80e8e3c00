// navro-nowplaying: what the media players on the session bus are playing, for Navro.
//
//   navro-nowplaying                      watch: one JSON object per line on standard output
//   navro-nowplaying send N [--player P]  transport: 0 play, 1 pause, 2 play/pause, 4 next,
//                                         5 previous
//   navro-nowplaying seek S [--player P]  go to S seconds into the track
//   navro-nowplaying raise [--player P]   bring the player's window forward
//
// P is the player's bus name (org.mpris.MediaPlayer2.… or its last part) as the watcher's
// "player" key gives it; without it the command goes to the player the watcher would report.
#include "nowplaying/MprisCommands.h"
#include "nowplaying/MprisWatcher.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* usage =
    "usage: navro-nowplaying                      print what plays, one JSON line per change\n"
    "       navro-nowplaying send N [--player P]  0 play, 1 pause, 2 play/pause, 4 next, "
    "5 previous\n"
    "       navro-nowplaying seek S [--player P]  go to S seconds into the track\n"
    "       navro-nowplaying raise [--player P]   bring the player's window forward\n";

int watch()
{
    // A watcher whose reader is gone has no one to tell: end with Navro, however it ends.
    const pid_t parent = getppid();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent)
        return 0;
    // A closed pipe shows as a failed write, which ends the loop, instead of killing the process.
    std::signal(SIGPIPE, SIG_IGN);

    std::string failure;
    auto bus = navro::SessionBus::open(failure);
    if (!bus) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        return 1;
    }
    navro::MprisWatcher watcher(*bus);
    return watcher.run();
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty())
        return watch();
    if (arguments[0] == "--help" || arguments[0] == "-h") {
        std::fputs(usage, stdout);
        return 0;
    }
    const auto command = navro::parseTransportCommand(arguments);
    if (!command) {
        std::fputs(usage, stderr);
        return 2;
    }
    std::string failure;
    auto bus = navro::SessionBus::open(failure);
    if (!bus) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        return 1;
    }
    return navro::runTransportCommand(*bus, *command);
}
