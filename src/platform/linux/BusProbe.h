#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace navro {

// Whether a D-Bus server answers at an address, found out without waiting longer than asked.
// The bus library gives no such bound: connecting to a server that accepts the connection and
// then says nothing blocks the caller for good, and with it every part of the process (Qt's own
// tray and theme code included) that touches that bus.
struct BusProbe {
    enum class Answer {
        answers, // the server took part in the handshake
        absent,  // nothing listens there (or it hung up at once): connecting fails fast
        silent,  // it accepted the connection and said nothing in time
        unknown, // an address this probe does not speak (tcp, launchd, ...)
    };
    Answer answer = Answer::unknown;
    std::string detail; // what the server did, for a log line ("the bus at X " + detail)
};

BusProbe probeBus(std::string_view address, std::chrono::milliseconds patience);

// The steps of probeBus for a caller that waits in its own event loop. The first connects
// without waiting: a socket under way (to be watched until it can be written to), or the answer
// when it is known at once. The caller owns the socket and closes it.
struct BusProbeStart {
    int fd = -1; // under way when not negative
    BusProbe answer;
};
BusProbeStart startBusProbe(std::string_view address);
// Once the socket can be written to: sends the handshake's opening line. False (with the answer)
// when the server is gone.
bool sendBusProbeGreeting(int fd, BusProbe& answer);
// Once the socket can be read: what the server did.
BusProbe readBusProbeReply(int fd);
// When the patience ran out first.
BusProbe silentBusProbe(std::chrono::milliseconds patience);

// The address without the servers' identities ("guid=..."), so that it reaches whichever bus
// listens there: one that starts again has a new identity, and the bus library refuses a server
// whose identity differs from the address's.
std::string withoutServerIdentity(std::string_view address);

// The file of a "unix:path=..." address (the first one of a list), whose reappearance tells that
// a bus has come back; none for other kinds of address.
std::optional<std::string> busSocketPath(std::string_view address);

} // namespace navro
