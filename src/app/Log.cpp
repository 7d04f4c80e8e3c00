#include "app/Log.h"

#include <algorithm>
#include <cstdio>
#include <syslog.h>

namespace navro {
namespace {

class SystemLogSink final : public LogSink {
public:
    SystemLogSink() { openlog("navro", LOG_PID, LOG_USER); }
    void write(std::string_view line) override
    {
        std::fprintf(stderr, "%.*s\n", int(line.size()), line.data());
        syslog(LOG_NOTICE, "%.*s", int(line.size()), line.data());
    }
};

LogSink*& installedSink()
{
    static SystemLogSink systemSink;
    static LogSink* sink = &systemSink;
    return sink;
}

} // namespace

std::string_view logPrefix(LogChannel channel)
{
    switch (channel) {
    case LogChannel::general:
        return "Navro: ";
    case LogChannel::nowPlaying:
        return "Navro Now Playing: ";
    case LogChannel::nowPlayingScript:
        return "Navro Now Playing script error: ";
    case LogChannel::bars:
        return "Navro bars: could not listen to system audio: ";
    }
    return "Navro: ";
}

void logLine(LogChannel channel, std::string_view message)
{
    std::string line(logPrefix(channel));
    line += message;
    // One event, one line: a message that carries a newline (tool output) is folded.
    std::replace(line.begin(), line.end(), '\n', ' ');
    installedSink()->write(line);
}

CapturingLogSink::CapturingLogSink() : previous_(installedSink())
{
    installedSink() = this;
}

CapturingLogSink::~CapturingLogSink()
{
    installedSink() = previous_;
}

bool CapturingLogSink::contains(std::string_view fragment) const
{
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(fragment) != std::string::npos;
    });
}

} // namespace navro
