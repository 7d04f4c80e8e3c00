#include "app/Log.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

TEST(Log, EachChannelWritesOneLineWithItsFixedPrefix)
{
    CapturingLogSink sink;
    logLine("launch at login change failed: denied");
    logLine(LogChannel::nowPlaying, "watcher exited");
    logLine(LogChannel::nowPlayingScript, "syntax");
    logLine(LogChannel::bars, "no monitor");
    EXPECT_EQ(sink.lines, (std::vector<std::string>{
                              "Navro: launch at login change failed: denied",
                              "Navro Now Playing: watcher exited",
                              "Navro Now Playing script error: syntax",
                              "Navro bars: could not listen to system audio: no monitor",
                          }));
}

TEST(Log, MultiLineMessagesStayOneLine)
{
    CapturingLogSink sink;
    logLine("first\nsecond");
    ASSERT_EQ(sink.lines.size(), 1u);
    EXPECT_EQ(sink.lines[0], "Navro: first second");
}

TEST(Log, NestedCapturesRestoreTheOuterSink)
{
    CapturingLogSink outer;
    {
        CapturingLogSink inner;
        logLine("inner");
        EXPECT_TRUE(inner.contains("inner"));
    }
    logLine("outer");
    EXPECT_EQ(outer.lines, std::vector<std::string>{"Navro: outer"});
}

} // namespace
} // namespace navro
