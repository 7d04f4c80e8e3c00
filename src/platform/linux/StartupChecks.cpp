#include "app/Log.h"
#include "app/Startup.h"
#include "platform/linux/BusProbe.h"
#include "platform/linux/SessionBus.h"

#include <cstdlib>
#include <string_view>
#include <xcb/xcb.h>

namespace navro {
namespace {

// Long enough for a bus under a heavy load to answer the first line of a handshake (it takes a
// fraction of a millisecond when idle), short enough not to hold a start-up for long.
constexpr std::chrono::milliseconds busPatience(2000);

// What libdbus connects to: the variable, else the socket in the runtime folder.
std::string addressOf(const char* variable, const std::string& fallback)
{
    const char* value = std::getenv(variable);
    return value && *value ? value : fallback;
}

std::string defaultSessionAddress()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    return runtime && *runtime ? "unix:path=" + std::string(runtime) + "/bus" : std::string();
}

struct SessionBusState {
    std::string address = addressOf("DBUS_SESSION_BUS_ADDRESS", defaultSessionAddress());
    std::string problem;
};

SessionBusState& sessionBus()
{
    static SessionBusState state;
    return state;
}

// An address that no transport claims: the bus library fails at once, and says why.
constexpr const char* noBus = "disabled:";

} // namespace

std::string sessionBusAddress()
{
    return sessionBus().address;
}

std::string sessionBusProblem()
{
    return sessionBus().problem;
}

void avoidSilentBuses()
{
    SessionBusState& session = sessionBus();
    const BusProbe sessionProbe = probeBus(session.address, busPatience);
    if (sessionProbe.answer == BusProbe::Answer::silent) {
        // Said once, by the remote control, which is what the user misses.
        session.problem =
            "the session bus at " + excerptForLog(session.address, 200) + " " + sessionProbe.detail;
        ::setenv("DBUS_SESSION_BUS_ADDRESS", noBus, 1);
    }
    // The system bus is probed beside the start-up instead (SystemBusGate): nothing before the
    // first frame needs it.
}

std::optional<std::string> displayProblem()
{
    // Another platform chosen on purpose (offscreen, say) is the chooser's business.
    const std::string_view platform =
        std::getenv("QT_QPA_PLATFORM") ? std::getenv("QT_QPA_PLATFORM") : "";
    if (!platform.empty() && !platform.starts_with("xcb"))
        return std::nullopt;
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display)
        return "DISPLAY is not set";
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const int error = xcb_connection_has_error(connection);
    xcb_disconnect(connection);
    if (error != 0)
        return "cannot connect to the display \"" + excerptForLog(display, 100) + "\"";
    return std::nullopt;
}

} // namespace navro
