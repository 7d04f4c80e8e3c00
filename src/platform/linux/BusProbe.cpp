#include "platform/linux/BusProbe.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace navro {
namespace {

struct UnixAddress {
    std::string name;
    bool isAbstract = false;
};

// D-Bus escapes bytes of a value as %xx.
std::optional<std::string> unescaped(std::string_view value)
{
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '%') {
            out += value[i];
            continue;
        }
        if (i + 2 >= value.size())
            return std::nullopt;
        auto digit = [](char c) -> int {
            if (c >= '0' && c <= '9')
                return c - '0';
            if (c >= 'a' && c <= 'f')
                return c - 'a' + 10;
            if (c >= 'A' && c <= 'F')
                return c - 'A' + 10;
            return -1;
        };
        const int high = digit(value[i + 1]);
        const int low = digit(value[i + 2]);
        if (high < 0 || low < 0)
            return std::nullopt;
        out += char(high * 16 + low);
        i += 2;
    }
    return out;
}

// The first entry of the list, when it is a unix socket a client can connect to.
std::optional<UnixAddress> unixAddress(std::string_view address)
{
    const std::string_view entry = address.substr(0, address.find(';'));
    if (!entry.starts_with("unix:"))
        return std::nullopt;
    std::string_view keys = entry.substr(5);
    while (!keys.empty()) {
        const std::string_view pair = keys.substr(0, keys.find(','));
        keys.remove_prefix(std::min(keys.size(), pair.size() + 1));
        const std::size_t equals = pair.find('=');
        if (equals == std::string_view::npos)
            continue;
        const std::string_view key = pair.substr(0, equals);
        if (key != "path" && key != "abstract")
            continue;
        auto value = unescaped(pair.substr(equals + 1));
        if (!value || value->empty())
            return std::nullopt;
        return UnixAddress{std::move(*value), key == "abstract"};
    }
    return std::nullopt;
}

// Waits for `events` on `fd` until `deadline`; false when the time ran out.
bool waitFor(int fd, short events, std::chrono::steady_clock::time_point deadline)
{
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return false;
        pollfd entry{fd, events, 0};
        const int ready = ::poll(&entry, 1, int(left.count()));
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return true; // let the following call report the error
    }
}

std::string hex(const std::string& text)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::string out;
    for (unsigned char c : text) {
        out += digits[c >> 4];
        out += digits[c & 0xf];
    }
    return out;
}

} // namespace

BusProbeStart startBusProbe(std::string_view address)
{
    const auto target = unixAddress(address);
    if (!target)
        return {-1, {BusProbe::Answer::unknown, "not a unix socket address"}};

    sockaddr_un socketAddress{};
    socketAddress.sun_family = AF_UNIX;
    const std::size_t offset = target->isAbstract ? 1 : 0;
    if (target->name.size() + offset >= sizeof socketAddress.sun_path)
        return {-1, {BusProbe::Answer::absent, "the socket name is too long"}};
    std::memcpy(socketAddress.sun_path + offset, target->name.data(), target->name.size());
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + offset + target->name.size() +
                                  (target->isAbstract ? 0 : 1));

    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return {-1, {BusProbe::Answer::unknown, std::strerror(errno)}};
    // A full backlog (EAGAIN) means the server is not taking connections in: the socket is
    // watched like one under way, and the patience decides.
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&socketAddress), length) != 0 &&
        errno != EAGAIN && errno != EINPROGRESS) {
        BusProbeStart start{-1, {BusProbe::Answer::absent, std::strerror(errno)}};
        ::close(fd);
        return start;
    }
    return {fd, {}};
}

bool sendBusProbeGreeting(int fd, BusProbe& answer)
{
    // The opening of the authentication handshake every D-Bus client sends first; any server
    // answers it at once, with OK, REJECTED or ERROR.
    const std::string hello =
        std::string(1, '\0') + "AUTH EXTERNAL " + hex(std::to_string(::getuid())) + "\r\n";
    if (::send(fd, hello.data(), hello.size(), MSG_NOSIGNAL) == ssize_t(hello.size()))
        return true;
    answer = {BusProbe::Answer::absent, std::strerror(errno)};
    return false;
}

BusProbe readBusProbeReply(int fd)
{
    char reply[64];
    const ssize_t got = ::recv(fd, reply, sizeof reply, MSG_DONTWAIT);
    if (got <= 0)
        return {BusProbe::Answer::absent, got == 0 ? "hung up" : std::strerror(errno)};
    return {BusProbe::Answer::answers, {}};
}

BusProbe silentBusProbe(std::chrono::milliseconds patience)
{
    return {BusProbe::Answer::silent, "accepted the connection but did not answer within " +
                                          std::to_string(patience.count()) + " ms"};
}

BusProbe probeBus(std::string_view address, std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    BusProbeStart start = startBusProbe(address);
    if (start.fd < 0)
        return start.answer;
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{start.fd};
    if (!waitFor(start.fd, POLLOUT, deadline))
        return {BusProbe::Answer::silent, "did not take the connection in"};
    if (!sendBusProbeGreeting(start.fd, start.answer))
        return start.answer;
    if (!waitFor(start.fd, POLLIN, deadline))
        return silentBusProbe(patience);
    return readBusProbeReply(start.fd);
}

std::string withoutServerIdentity(std::string_view address)
{
    std::string out;
    while (!address.empty()) {
        std::string_view entry = address.substr(0, address.find(';'));
        address.remove_prefix(std::min(address.size(), entry.size() + 1));
        const std::size_t colon = entry.find(':');
        std::string kept(
            entry.substr(0, colon == std::string_view::npos ? entry.size() : colon + 1));
        std::string_view keys = colon == std::string_view::npos ? "" : entry.substr(colon + 1);
        bool first = true;
        while (!keys.empty()) {
            const std::string_view pair = keys.substr(0, keys.find(','));
            keys.remove_prefix(std::min(keys.size(), pair.size() + 1));
            if (pair.starts_with("guid="))
                continue;
            kept += (first ? "" : ",") + std::string(pair);
            first = false;
        }
        out += (out.empty() ? "" : ";") + kept;
    }
    return out;
}

std::optional<std::string> busSocketPath(std::string_view address)
{
    const auto target = unixAddress(address);
    if (!target || target->isAbstract)
        return std::nullopt;
    return target->name;
}

} // namespace navro
