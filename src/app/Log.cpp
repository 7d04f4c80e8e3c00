#include "app/Log.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <syslog.h>

namespace navro {
namespace {

class SystemLogSink final : public LogSink {
public:
    SystemLogSink() { openlog("navro", LOG_PID, LOG_USER); }
    void write(LogPriority priority, std::string_view line) override
    {
        std::fprintf(stderr, "%.*s\n", int(line.size()), line.data());
        syslog(int(priority), "%.*s", int(line.size()), line.data());
    }
};

LogSink& systemSink()
{
    static SystemLogSink sink;
    return sink;
}

LogSink*& installedSink()
{
    static LogSink* sink = &systemSink();
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

namespace {

// Appends `text` with control characters escaped, stopping before `limit` bytes of output.
// Returns how many bytes of `text` were taken; a multi-byte character is taken whole or not at all.
std::size_t appendEscaped(std::string& out, std::string_view text, std::size_t limit)
{
    static constexpr char hex[] = "0123456789abcdef";
    std::size_t taken = 0;
    while (taken < text.size()) {
        const auto byte = static_cast<unsigned char>(text[taken]);
        std::string piece;
        std::size_t width = 1;
        if (byte == '\n') {
            piece = "\\n";
        } else if (byte == '\t') {
            piece = "\\t";
        } else if (byte == '\r') {
            piece = "\\r";
        } else if (byte < 0x20 || byte == 0x7f) {
            piece = {'\\', 'x', hex[byte >> 4], hex[byte & 0xf]};
        } else {
            // A UTF-8 lead byte says how long its character is; a stray continuation byte or a
            // character cut off by the end of the text counts as one byte.
            width = byte >= 0xf0 ? 4 : byte >= 0xe0 ? 3 : byte >= 0xc0 ? 2 : 1;
            if (taken + width > text.size())
                width = 1;
            piece.assign(text.substr(taken, width));
        }
        if (out.size() + piece.size() > limit)
            break;
        out += piece;
        taken += width;
    }
    return taken;
}

} // namespace

std::string excerptForLog(std::string_view text, std::size_t limit)
{
    std::string out;
    const std::size_t taken = appendEscaped(out, text, limit);
    if (taken < text.size())
        out += "... (" + std::to_string(text.size()) + " bytes)";
    return out;
}

void installLogSink(LogSink* sink)
{
    installedSink() = sink ? sink : &systemSink();
}

void logLine(LogPriority priority, LogChannel channel, std::string_view message)
{
    std::string line(logPrefix(channel));
    const std::size_t taken = appendEscaped(line, message, maxLogLineBytes - 32);
    if (taken < message.size())
        line += "... (cut at " + std::to_string(taken) + " bytes)";
    installedSink()->write(priority, line);
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
