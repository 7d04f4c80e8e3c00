#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace navro {

// A Unix socket at `path` that takes connections in and says nothing unless the test makes it,
// as a bus that hung does.
class ListeningSocket {
public:
    explicit ListeningSocket(const std::string& path) : fd_(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.data(), std::min(path.size(), sizeof address.sun_path));
        ok_ = ::bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
              ::listen(fd_, 8) == 0;
    }
    ~ListeningSocket() { ::close(fd_); }
    ListeningSocket(const ListeningSocket&) = delete;
    ListeningSocket& operator=(const ListeningSocket&) = delete;

    bool ok() const { return ok_; }
    int fd() const { return fd_; }

private:
    int fd_;
    bool ok_ = false;
};

} // namespace navro
