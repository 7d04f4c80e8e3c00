#pragma once

#include "app/Log.h"

#include <string>

namespace navro {

// Navro's log lines on a systemd machine: each goes to the journal with the identifier "navro" and
// its priority, and to standard error as everywhere else, unless standard error already is the
// journal (a user service), where the same line would show twice. Without a journal the lines go
// to syslog instead.
class JournalLogSink final : public LogSink {
public:
    static constexpr const char* systemSocket = "/run/systemd/journal/socket";

    // journalStream: the "device:inode" systemd puts in JOURNAL_STREAM when it connects a
    // service's standard error to the journal, or null.
    JournalLogSink(std::string socketPath, int errorFd, const char* journalStream);
    ~JournalLogSink() override;
    JournalLogSink(const JournalLogSink&) = delete;
    JournalLogSink& operator=(const JournalLogSink&) = delete;

    // The journal's own socket, standard error and this process's JOURNAL_STREAM.
    static JournalLogSink& forThisProcess();

    void write(LogPriority priority, std::string_view line) override;

private:
    bool sendToJournal(LogPriority priority, std::string_view line);

    std::string socketPath_;
    int socket_ = -1;
    int errorFd_;
    bool errorIsJournal_ = false;
};

// The datagram the journal's native protocol expects for one line.
std::string journalEntry(LogPriority priority, std::string_view line);

} // namespace navro
