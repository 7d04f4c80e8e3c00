#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace navro {

// Every failure of a tool, a file or a service is written as one line that starts with the
// prefix of the part that noticed it.
enum class LogChannel { general, nowPlaying, nowPlayingScript, bars };

std::string_view logPrefix(LogChannel channel);

class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void write(std::string_view line) = 0;
};

// Writes `prefix + message` as one line to the installed sink (standard error and syslog unless
// a test installed its own).
void logLine(LogChannel channel, std::string_view message);
inline void logLine(std::string_view message)
{
    logLine(LogChannel::general, message);
}

// Collects lines instead of writing them, for as long as it lives.
class CapturingLogSink final : public LogSink {
public:
    CapturingLogSink();
    ~CapturingLogSink() override;
    CapturingLogSink(const CapturingLogSink&) = delete;
    CapturingLogSink& operator=(const CapturingLogSink&) = delete;

    void write(std::string_view line) override { lines.emplace_back(line); }
    bool contains(std::string_view fragment) const;

    std::vector<std::string> lines;

private:
    LogSink* previous_;
};

} // namespace navro
