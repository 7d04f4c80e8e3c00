#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace navro {

// Every failure of a tool, a file or a service is written as one line that starts with the
// prefix of the part that noticed it.
enum class LogChannel { general, nowPlaying, nowPlayingScript, bars };

std::string_view logPrefix(LogChannel channel);

// How much a line matters, as syslog and the journal number it. Most lines say that something
// failed and Navro carried on without it: a notice.
enum class LogPriority { critical = 2, error = 3, warning = 4, notice = 5, info = 6, debug = 7 };

class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void write(LogPriority priority, std::string_view line) = 0;
};

// Lines go to `sink` from now on (the process's own, set up once in main); nullptr goes back to
// standard error and syslog.
void installLogSink(LogSink* sink);

// Writes `prefix + message` as one line to the installed sink (standard error and syslog unless
// a test installed its own). Control characters are escaped and the line is cut at
// maxLogLineBytes, so whatever a message carries, a line stays one line of bounded length.
void logLine(LogPriority priority, LogChannel channel, std::string_view message);
inline void logLine(LogChannel channel, std::string_view message)
{
    logLine(LogPriority::notice, channel, message);
}
inline void logLine(std::string_view message)
{
    logLine(LogPriority::notice, LogChannel::general, message);
}

inline constexpr std::size_t maxLogLineBytes = 2048;

// Text from outside (another process's arguments, a file's contents, a tool's output) as it may
// appear inside a log message: control characters escaped (\n, \t, \xNN), cut after at most
// `limit` bytes on a character boundary, and when cut, followed by how long it was in all.
std::string excerptForLog(std::string_view text, std::size_t limit = 200);

// Collects lines instead of writing them, for as long as it lives.
class CapturingLogSink final : public LogSink {
public:
    CapturingLogSink();
    ~CapturingLogSink() override;
    CapturingLogSink(const CapturingLogSink&) = delete;
    CapturingLogSink& operator=(const CapturingLogSink&) = delete;

    void write(LogPriority priority, std::string_view line) override
    {
        lines.emplace_back(line);
        priorities.push_back(priority);
    }
    bool contains(std::string_view fragment) const;

    std::vector<std::string> lines;
    std::vector<LogPriority> priorities; // one per line

private:
    LogSink* previous_;
};

} // namespace navro
