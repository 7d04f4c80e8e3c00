#include "app/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace navro {
namespace {

// Whatever the message, each channel writes exactly one line of bounded length after its prefix.
TEST(Log, EveryMessageIsOneEscapedBoundedLineAfterItsChannelsPrefix)
{
    CapturingLogSink sink;
    logLine("launch at login change failed: denied");
    logLine(LogChannel::nowPlaying, "watcher exited");
    logLine(LogChannel::nowPlayingScript, "syntax");
    logLine(LogChannel::bars, "no monitor");
    logLine(std::string("first\nsecond\tthird\r\x1b[31m\x7f") + '\0' + "end");
    logLine(std::string(120 * 1024, 'a'));
    ASSERT_EQ(sink.lines.size(), 6u);
    EXPECT_EQ(std::vector(sink.lines.begin(), sink.lines.begin() + 5),
              (std::vector<std::string>{
                  "Navro: launch at login change failed: denied",
                  "Navro Now Playing: watcher exited",
                  "Navro Now Playing script error: syntax",
                  "Navro bars: could not listen to system audio: no monitor",
                  "Navro: first\\nsecond\\tthird\\r\\x1b[31m\\x7f\\x00end",
              }));
    EXPECT_LE(sink.lines[5].size(), maxLogLineBytes);
    EXPECT_THAT(sink.lines[5], ::testing::HasSubstr("... (cut at "));
}

TEST(Log, ExcerptsCutOnCharacterBoundariesAndSayTheFullLength)
{
    struct Case {
        std::string text;
        std::size_t limit;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"short", 200, "short"},
        {"abcdefgh", 4, "abcd... (8 bytes)"},
        // Arabic letters are two bytes each: the third one does not fit in five bytes.
        {"\u0645\u0631\u062d\u0628\u0627", 5, "\u0645\u0631... (10 bytes)"},
        // An escape is not split either.
        {"ab\ncd", 3, "ab... (5 bytes)"},
        {"a\x01", 10, "a\\x01"},
        // A broken character is passed on byte by byte.
        {"x\xe2\x82", 10, "x\xe2\x82"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(excerptForLog(c.text, c.limit), c.expected) << c.text;
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
