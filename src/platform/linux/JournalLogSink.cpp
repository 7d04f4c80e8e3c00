#include "platform/linux/JournalLogSink.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

namespace navro {
namespace {

bool isJournalStream(int fd, const char* journalStream)
{
    if (!journalStream || fd < 0)
        return false;
    struct stat status {};
    if (::fstat(fd, &status) != 0)
        return false;
    unsigned long long device = 0;
    unsigned long long inode = 0;
    if (std::sscanf(journalStream, "%llu:%llu", &device, &inode) != 2)
        return false;
    return device == static_cast<unsigned long long>(status.st_dev) &&
           inode == static_cast<unsigned long long>(status.st_ino);
}

void appendField(std::string& entry, std::string_view name, std::string_view value)
{
    entry += name;
    if (value.find('\n') == std::string_view::npos) {
        entry += '=';
        entry += value;
    } else {
        // A value with a line break goes as its length (64 bits, little-endian) and its bytes.
        entry += '\n';
        std::uint64_t size = value.size();
        for (int byte = 0; byte < 8; ++byte)
            entry += static_cast<char>((size >> (8 * byte)) & 0xff);
        entry += value;
    }
    entry += '\n';
}

} // namespace

std::string journalEntry(LogPriority priority, std::string_view line)
{
    std::string entry;
    appendField(entry, "PRIORITY", std::to_string(int(priority)));
    appendField(entry, "SYSLOG_IDENTIFIER", "navro");
    appendField(entry, "MESSAGE", line);
    return entry;
}

JournalLogSink::JournalLogSink(std::string socketPath, int errorFd, const char* journalStream)
    : socketPath_(std::move(socketPath)), socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)),
      errorFd_(errorFd), errorIsJournal_(isJournalStream(errorFd, journalStream))
{
}

JournalLogSink::~JournalLogSink()
{
    if (socket_ >= 0)
        ::close(socket_);
}

JournalLogSink& JournalLogSink::forThisProcess()
{
    static JournalLogSink sink(systemSocket, STDERR_FILENO, std::getenv("JOURNAL_STREAM"));
    return sink;
}

bool JournalLogSink::sendToJournal(LogPriority priority, std::string_view line)
{
    if (socket_ < 0)
        return false;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketPath_.size() >= sizeof(address.sun_path))
        return false;
    std::memcpy(address.sun_path, socketPath_.c_str(), socketPath_.size() + 1);
    const std::string entry = journalEntry(priority, line);
    // Never waits for a journal that is busy: the line is on standard error as well.
    return ::sendto(socket_, entry.data(), entry.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                    reinterpret_cast<const sockaddr*>(&address),
                    sizeof(address)) == static_cast<ssize_t>(entry.size());
}

void JournalLogSink::write(LogPriority priority, std::string_view line)
{
    const bool journaled = sendToJournal(priority, line);
    if (!journaled)
        syslog(int(priority), "%.*s", int(line.size()), line.data());
    if (!(journaled && errorIsJournal_)) {
        std::string text(line);
        text += '\n';
        // One write per line, so that lines of concurrent writers never interleave mid-line.
        [[maybe_unused]] const auto written = ::write(errorFd_, text.data(), text.size());
    }
}

} // namespace navro
