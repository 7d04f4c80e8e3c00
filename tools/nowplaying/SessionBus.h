#pragma once

#include "nowplaying/MprisPlayer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <systemd/sd-bus.h>
#include <vector>

namespace navro {

// The session bus through sd-bus, with the few calls the watcher and the commands make. sd-bus
// keeps the helper's resident memory at about a quarter of what a Qt event loop would take.
class SessionBus {
public:
    using Message = std::unique_ptr<sd_bus_message, sd_bus_message* (*)(sd_bus_message*)>;
    // Appends a call's arguments; returns a negative errno on failure.
    using Arguments = std::function<int(sd_bus_message*)>;

    // Nothing when no session bus can be reached; `failure` says why.
    static std::unique_ptr<SessionBus> open(std::string& failure);
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    sd_bus* handle() const { return bus_; }

    // A method call with a reply; nothing on failure (`failure` says why). Waits at most two
    // seconds: a player that hangs must not stall the watcher for long.
    Message call(const std::string& destination, const char* path, const char* interface,
                 const char* member, const Arguments& arguments, std::string& failure);

    // All properties of an interface; Metadata, when present, goes to `metadata`.
    std::optional<BusProperties> getAll(const std::string& destination, const char* interface,
                                        std::optional<BusProperties>& metadata,
                                        std::string& failure);
    std::optional<BusValue> get(const std::string& destination, const char* interface,
                                const char* property, std::string& failure);
    // The unique name owning `name`, or nothing.
    std::optional<std::string> ownerOf(const std::string& name);
    // Every org.mpris.MediaPlayer2.* name on the bus, sorted.
    std::vector<std::string> mediaPlayers(std::string& failure);

    static std::string describe(const sd_bus_error& error, int code);

private:
    explicit SessionBus(sd_bus* bus) : bus_(bus) {}
    sd_bus* bus_;
};

// Readers for message bodies, positioned at the value to read.
BusValue readVariant(sd_bus_message* message, std::optional<BusProperties>* nested);
// An a{sv}; the value under "Metadata" (itself an a{sv}) goes to `metadata` when given.
std::optional<BusProperties> readProperties(sd_bus_message* message,
                                            std::optional<BusProperties>* metadata);

} // namespace navro
