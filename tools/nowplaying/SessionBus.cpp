#include "nowplaying/SessionBus.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace navro {
namespace {

constexpr std::uint64_t callTimeoutMicros = 2'000'000;

SessionBus::Message adopt(sd_bus_message* message)
{
    return SessionBus::Message(message, &sd_bus_message_unref);
}

struct ErrorHolder {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    ~ErrorHolder() { sd_bus_error_free(&error); }
};

BusValue readBasic(sd_bus_message* message, char type)
{
    switch (type) {
    case 's':
    case 'o':
    case 'g': {
        const char* text = nullptr;
        if (sd_bus_message_read_basic(message, type, &text) >= 0 && text)
            return std::string(text);
        break;
    }
    case 'x': {
        std::int64_t value = 0;
        if (sd_bus_message_read_basic(message, type, &value) >= 0)
            return value;
        break;
    }
    case 't': {
        std::uint64_t value = 0;
        if (sd_bus_message_read_basic(message, type, &value) >= 0)
            return std::int64_t(std::min<std::uint64_t>(value, INT64_MAX));
        break;
    }
    case 'i': {
        std::int32_t value = 0;
        if (sd_bus_message_read_basic(message, type, &value) >= 0)
            return std::int64_t(value);
        break;
    }
    case 'u': {
        std::uint32_t value = 0;
        if (sd_bus_message_read_basic(message, type, &value) >= 0)
            return std::int64_t(value);
        break;
    }
    case 'd': {
        double value = 0;
        if (sd_bus_message_read_basic(message, type, &value) >= 0)
            return value;
        break;
    }
    case 'b': {
        int value = 0;
        if (sd_bus_message_read_basic(message, type, &value) >= 0)
            return value != 0;
        break;
    }
    default:
        sd_bus_message_skip(message, std::string(1, type).c_str());
    }
    return {};
}

} // namespace

BusValue readVariant(sd_bus_message* message, std::optional<BusProperties>* nested)
{
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != 'v' || !contents)
        return {};
    if (sd_bus_message_enter_container(message, 'v', contents) < 0)
        return {};
    const std::string_view signature(contents);
    BusValue value;
    if (signature == "as") {
        char** strings = nullptr;
        if (sd_bus_message_read_strv(message, &strings) >= 0 && strings) {
            std::vector<std::string> list;
            for (char** item = strings; *item; ++item) {
                list.emplace_back(*item);
                std::free(*item);
            }
            std::free(strings);
            value = std::move(list);
        }
    } else if (signature == "a{sv}" && nested) {
        *nested = readProperties(message, nullptr);
    } else if (signature.size() == 1) {
        value = readBasic(message, signature[0]);
    } else {
        sd_bus_message_skip(message, contents);
    }
    sd_bus_message_exit_container(message);
    return value;
}

std::optional<BusProperties> readProperties(sd_bus_message* message,
                                            std::optional<BusProperties>* metadata)
{
    if (sd_bus_message_enter_container(message, 'a', "{sv}") < 0)
        return std::nullopt;
    BusProperties properties;
    int entered = 0;
    while ((entered = sd_bus_message_enter_container(message, 'e', "sv")) > 0) {
        const char* key = nullptr;
        if (sd_bus_message_read_basic(message, 's', &key) < 0 || !key)
            return std::nullopt;
        const std::string name(key);
        properties[name] = readVariant(message, name == "Metadata" ? metadata : nullptr);
        if (sd_bus_message_exit_container(message) < 0)
            return std::nullopt;
    }
    if (entered < 0 || sd_bus_message_exit_container(message) < 0)
        return std::nullopt;
    return properties;
}

std::unique_ptr<SessionBus> SessionBus::open(std::string& failure)
{
    sd_bus* bus = nullptr;
    const int result = sd_bus_open_user(&bus);
    if (result < 0) {
        failure = std::string("could not connect to the session bus: ") + std::strerror(-result);
        return nullptr;
    }
    return std::unique_ptr<SessionBus>(new SessionBus(bus));
}

SessionBus::~SessionBus()
{
    sd_bus_flush_close_unref(bus_);
}

std::string SessionBus::describe(const sd_bus_error& error, int code)
{
    if (error.message)
        return error.message;
    if (error.name)
        return error.name;
    return std::strerror(-code);
}

SessionBus::Message SessionBus::call(const std::string& destination, const char* path,
                                     const char* interface, const char* member,
                                     const Arguments& arguments, std::string& failure)
{
    sd_bus_message* raw = nullptr;
    int result =
        sd_bus_message_new_method_call(bus_, &raw, destination.c_str(), path, interface, member);
    Message call = adopt(raw);
    if (result >= 0 && arguments)
        result = arguments(call.get());
    if (result < 0) {
        failure =
            std::string("could not build a call of ") + member + ": " + std::strerror(-result);
        return adopt(nullptr);
    }
    ErrorHolder error;
    sd_bus_message* reply = nullptr;
    result = sd_bus_call(bus_, call.get(), callTimeoutMicros, &error.error, &reply);
    if (result < 0) {
        failure = std::string(member) + " of " + destination +
                  " failed: " + describe(error.error, result);
        return adopt(nullptr);
    }
    return adopt(reply);
}

std::optional<BusProperties> SessionBus::getAll(const std::string& destination,
                                                const char* interface,
                                                std::optional<BusProperties>& metadata,
                                                std::string& failure)
{
    Message reply = call(
        destination, mprisPath, "org.freedesktop.DBus.Properties", "GetAll",
        [&](sd_bus_message* m) { return sd_bus_message_append(m, "s", interface); }, failure);
    if (!reply)
        return std::nullopt;
    auto properties = readProperties(reply.get(), &metadata);
    if (!properties)
        failure = "the properties of " + destination + " could not be read";
    return properties;
}

std::optional<BusValue> SessionBus::get(const std::string& destination, const char* interface,
                                        const char* property, std::string& failure)
{
    Message reply = call(
        destination, mprisPath, "org.freedesktop.DBus.Properties", "Get",
        [&](sd_bus_message* m) { return sd_bus_message_append(m, "ss", interface, property); },
        failure);
    if (!reply)
        return std::nullopt;
    return readVariant(reply.get(), nullptr);
}

std::optional<std::string> SessionBus::ownerOf(const std::string& name)
{
    std::string failure;
    Message reply = call(
        "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetNameOwner",
        [&](sd_bus_message* m) { return sd_bus_message_append(m, "s", name.c_str()); }, failure);
    const char* owner = nullptr;
    if (!reply || sd_bus_message_read(reply.get(), "s", &owner) < 0 || !owner)
        return std::nullopt;
    return std::string(owner);
}

std::vector<std::string> SessionBus::mediaPlayers(std::string& failure)
{
    std::vector<std::string> players;
    Message reply = call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "ListNames", nullptr, failure);
    char** names = nullptr;
    if (!reply || sd_bus_message_read_strv(reply.get(), &names) < 0 || !names)
        return players;
    for (char** name = names; *name; ++name) {
        if (std::string_view(*name).starts_with(mprisPrefix))
            players.emplace_back(*name);
        std::free(*name);
    }
    std::free(names);
    std::sort(players.begin(), players.end());
    return players;
}

} // namespace navro
