#include "nowplaying/NowPlayingLine.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

PlayerReport track(const std::string& title, std::optional<std::string> cover = std::nullopt)
{
    PlayerReport report;
    report.title = title;
    report.artist = "Artist";
    report.album = "Album";
    report.duration = 60;
    report.elapsed = 1.5;
    report.rate = 1;
    report.timestamp = 1700000000123;
    report.artworkBytes = std::move(cover);
    report.bundle = "mpv";
    report.app = "mpv Media Player";
    report.player = "org.mpris.MediaPlayer2.mpv";
    return report;
}

TEST(NowPlayingLine, EveryKeyUnderItsProtocolNameInOneObject)
{
    PlayerReport report = track("Song", "abc");
    report.artUrl = "https://example.org/c.jpg";
    report.error = "oops";
    EXPECT_EQ(toJson(report, true),
              R"({"title":"Song","artist":"Artist","album":"Album","duration":60,"elapsed":1.5,)"
              R"("rate":1,"timestamp":1700000000123,"artwork":"YWJj",)"
              R"("artUrl":"https://example.org/c.jpg","bundle":"mpv","app":"mpv Media Player",)"
              R"("player":"org.mpris.MediaPlayer2.mpv","error":"oops"})");
    EXPECT_EQ(toJson(PlayerReport{}, true), "{}");
}

TEST(NowPlayingLine, TextIsEscapedSoTheLineStaysOneValidLine)
{
    PlayerReport report;
    report.title = "a\"b\\c\nd\re\tf\x01g\x7fh – عربي";
    EXPECT_EQ(toJson(report, false), R"({"title":"a\"b\\c\nd\re\tf\u0001g\u007fh – عربي"})");
}

TEST(NowPlayingLine, NumbersInShortestFormAndNeverNaN)
{
    PlayerReport report;
    report.duration = 0.1;
    report.elapsed = 1e21;
    report.rate = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(toJson(report, false), R"({"duration":0.1,"elapsed":1e+21,"rate":null})");
}

TEST(LinePrinter, PrintsOnlyChangesAndTheCoverOncePerTrack)
{
    LinePrinter printer;
    const auto first = printer.next(track("One", "cover-one"));
    ASSERT_TRUE(first);
    EXPECT_NE(first->find(R"("artwork":")" + base64("cover-one") + '"'), std::string::npos);
    EXPECT_EQ(first->back(), '\n');
    EXPECT_EQ(first->find('\n'), first->size() - 1);

    EXPECT_FALSE(printer.next(track("One", "cover-one"))) << "an unchanged state prints nothing";

    PlayerReport paused = track("One", "cover-one");
    paused.rate = 0;
    const auto second = printer.next(paused);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->find("artwork"), std::string::npos) << "same cover, not sent again";
    EXPECT_NE(second->find(R"("rate":0)"), std::string::npos);

    const auto nextTrack = printer.next(track("Two", "cover-one"));
    ASSERT_TRUE(nextTrack);
    EXPECT_NE(nextTrack->find("artwork"), std::string::npos) << "a new title sends the cover";

    const auto newCover = printer.next(track("Two", "a longer cover"));
    ASSERT_TRUE(newCover);
    EXPECT_NE(newCover->find(base64("a longer cover")), std::string::npos);
}

TEST(LinePrinter, ACoverComesBackAfterATrackWithoutOne)
{
    LinePrinter printer;
    ASSERT_TRUE(printer.next(track("One", "cover")));
    const auto bare = printer.next(track("Other"));
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->find("artwork"), std::string::npos);
    const auto back = printer.next(track("One", "cover"));
    ASSERT_TRUE(back);
    EXPECT_NE(back->find(R"("artwork":")" + base64("cover")), std::string::npos);
}

TEST(LinePrinter, NothingPlayingIsOneEmptyObject)
{
    LinePrinter printer;
    EXPECT_EQ(printer.next(PlayerReport{}), "{}\n");
    EXPECT_FALSE(printer.next(PlayerReport{}));
    ASSERT_TRUE(printer.next(track("One")));
    EXPECT_EQ(printer.next(PlayerReport{}), "{}\n");
}

TEST(Base64, StandardVectors)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
    };
    for (const auto& [plain, encoded] : cases)
        EXPECT_EQ(base64(plain), encoded) << plain;
    EXPECT_EQ(base64(std::string("\xff\xfe\x00\x80", 4)), "//4AgA==");
}

TEST(CoverUrls, LocalFilesAndWebAddresses)
{
    const std::pair<const char*, std::optional<std::string>> local[] = {
        {"file:///home/u/Music/cover.png", "/home/u/Music/cover.png"},
        {"file://localhost/tmp/a.jpg", "/tmp/a.jpg"},
        {"file:///tmp/My%20Album/cover%2Ejpg", "/tmp/My Album/cover.jpg"},
        {"file:///tmp/a%2", "/tmp/a%2"},
        {"file:///tmp/a%zz", "/tmp/a%zz"},
        {"file:///tmp/a.jpg?size=1", "/tmp/a.jpg"},
        {"file:///tmp/a%00b", std::nullopt},
        {"file://server/share/a.jpg", std::nullopt},
        {"file://", std::nullopt},
        {"https://example.org/a.jpg", std::nullopt},
        {"/tmp/a.jpg", std::nullopt},
    };
    for (const auto& [url, path] : local)
        EXPECT_EQ(localPathOfUrl(url), path) << url;

    EXPECT_TRUE(isWebUrl("https://i.example.org/image/ab12"));
    EXPECT_TRUE(isWebUrl("http://127.0.0.1:8000/c.png"));
    EXPECT_FALSE(isWebUrl("file:///tmp/c.png"));
    EXPECT_FALSE(isWebUrl("httpx://x"));
    EXPECT_FALSE(isWebUrl("data:image/png;base64,AAAA"));
}

} // namespace
} // namespace navro
