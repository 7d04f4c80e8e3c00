#include "nowplaying/MprisPlayer.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

BusProperties mpvMetadata()
{
    return {
        {"xesam:title", std::string("First Song")},
        {"xesam:artist", std::vector<std::string>{"Ann", "", "Bob"}},
        {"xesam:album", std::string("Album")},
        {"mpris:length", std::int64_t(60'000'000)},
        {"mpris:trackid", std::string("/0")},
        {"mpris:artUrl", std::string("file:///music/cover.png")},
    };
}

MprisPlayer playingMpv()
{
    MprisPlayer player;
    player.name = "org.mpris.MediaPlayer2.mpv";
    player.applyApplicationProperties(
        {{"Identity", std::string("mpv")}, {"DesktopEntry", std::string("mpv.desktop")}});
    const BusProperties metadata = mpvMetadata();
    player.applyPlayerProperties(
        {{"PlaybackStatus", std::string("Playing")}, {"Rate", 1.0}, {"Volume", 1.0}}, &metadata);
    player.setPosition(12'500'000, 1700000000000);
    return player;
}

TEST(MprisPlayer, ReportOfAPlayingTrack)
{
    const PlayerReport report = playingMpv().report();
    EXPECT_EQ(report.title, "First Song");
    EXPECT_EQ(report.artist, "Ann, Bob");
    EXPECT_EQ(report.album, "Album");
    EXPECT_EQ(report.duration, 60);
    EXPECT_EQ(report.elapsed, 12.5);
    EXPECT_EQ(report.timestamp, 1700000000000);
    EXPECT_EQ(report.rate, 1);
    EXPECT_EQ(report.bundle, "mpv") << "the desktop entry id, without .desktop";
    EXPECT_EQ(report.app, "mpv");
    EXPECT_EQ(report.player, "org.mpris.MediaPlayer2.mpv");
    EXPECT_FALSE(report.artUrl) << "a local cover is sent as bytes, not as an address";
}

TEST(MprisPlayer, RateFollowsThePlaybackStatus)
{
    const std::tuple<const char*, double, double> cases[] = {
        {"Playing", 1.0, 1.0}, {"Playing", 1.5, 1.5}, {"Playing", 0.0, 1.0},
        {"Paused", 1.0, 0.0},  {"Stopped", 1.0, 0.0}, {"Unknown", 1.0, 0.0},
    };
    for (const auto& [status, rate, expected] : cases) {
        MprisPlayer player = playingMpv();
        player.applyPlayerProperties({{"PlaybackStatus", std::string(status)}, {"Rate", rate}},
                                     nullptr);
        EXPECT_EQ(player.report().rate, expected) << status << " at rate " << rate;
    }
}

TEST(MprisPlayer, NewMetadataReplacesTheOldWhole)
{
    MprisPlayer player = playingMpv();
    const BusProperties next{{"xesam:title", std::string("b.ogg")},
                             {"mpris:artUrl", std::string("https://example.org/b.jpg")}};
    player.applyPlayerProperties({{"Metadata", {}}}, &next);
    const PlayerReport report = player.report();
    EXPECT_EQ(report.title, "b.ogg");
    EXPECT_EQ(report.artist, "");
    EXPECT_EQ(report.album, "");
    EXPECT_EQ(report.duration, 0);
    EXPECT_EQ(report.artUrl, "https://example.org/b.jpg");
    EXPECT_EQ(report.rate, 1) << "the status is not part of the metadata";
}

TEST(MprisPlayer, LenientAboutWhatPlayersActuallySend)
{
    MprisPlayer player;
    player.name = "org.mpris.MediaPlayer2.odd";
    const BusProperties metadata{
        {"xesam:title", std::string("")},
        {"xesam:artist", std::string("Solo")}, // a string instead of a list
        {"mpris:length", 90.5e6},              // a double instead of an int64
        {"xesam:album", std::int64_t(7)},      // not text at all
    };
    player.applyPlayerProperties({{"PlaybackStatus", true}, {"Rate", std::string("fast")}},
                                 &metadata);
    const PlayerReport report = player.report();
    EXPECT_FALSE(report.title) << "an empty title is no title";
    EXPECT_EQ(report.artist, "Solo");
    EXPECT_EQ(report.duration, 90.5);
    EXPECT_EQ(report.album, "");
    EXPECT_EQ(report.rate, 0);
    EXPECT_FALSE(report.elapsed) << "no position was ever read";
    EXPECT_FALSE(report.timestamp);
    EXPECT_FALSE(report.bundle);
    EXPECT_FALSE(report.app);
}

TEST(MprisPlayer, PropertiesNotMentionedKeepTheirValues)
{
    MprisPlayer player = playingMpv();
    player.applyPlayerProperties({{"Volume", 0.5}}, nullptr);
    player.applyApplicationProperties({{"Fullscreen", false}});
    EXPECT_EQ(player.report(), playingMpv().report());
}

} // namespace
} // namespace navro
