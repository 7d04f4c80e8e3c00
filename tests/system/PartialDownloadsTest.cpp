#include "system/PartialDownloads.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

TEST(PartialDownloadsTest, FinalNames)
{
    const std::vector<std::pair<std::string_view, std::optional<std::string>>> table = {
        {"film.mkv.part", "film.mkv"},                     // Firefox
        {"report.pdf.crdownload", "report.pdf"},           // Chromium
        {"Unconfirmed 812.crdownload", "Unconfirmed 812"}, // Chromium before a name is chosen
        {"song.ogg.download", "song.ogg"},                 // Safari, Epiphany
        {"a.tar.gz.partial", "a.tar.gz"},                  // others
        {"x..part", "x."},
        {"film.mkv", std::nullopt},
        {".part", std::nullopt},
        {"..part", std::nullopt},
        {"notes.PART", std::nullopt},
        {"partial", std::nullopt},
        {"film.part.mkv", std::nullopt},
    };
    for (const auto& [name, expected] : table)
        EXPECT_EQ(finalNameOfPartial(name), expected) << name;
}

WallTime at(double seconds)
{
    return WallTime(std::chrono::milliseconds(std::int64_t(1'700'000'000'000 + seconds * 1000)));
}

TEST(DownloadTrackerTest, GrowsThenFinishesWhenRenamed)
{
    DownloadTracker tracker;
    // Firefox leaves an empty placeholder under the final name while it downloads.
    auto changes =
        tracker.update({{"film.mkv", 0}, {"film.mkv.part", 1000}, {"old.txt", 5}}, at(0));
    EXPECT_TRUE(changes.listChanged);
    ASSERT_EQ(tracker.downloads().size(), 1u);
    EXPECT_EQ(tracker.downloads()[0].finalName, "film.mkv");
    EXPECT_EQ(tracker.downloads()[0].bytes, 1000u);

    changes = tracker.update({{"film.mkv", 0}, {"film.mkv.part", 3000}}, at(1));
    EXPECT_TRUE(changes.listChanged);
    EXPECT_EQ(tracker.downloads()[0].bytes, 3000u);
    EXPECT_NEAR(tracker.downloads()[0].bytesPerSecond, 1000.0, 1e-6); // half of 2000 B/s smoothed
    EXPECT_TRUE(changes.finished.empty());

    changes = tracker.update({{"film.mkv", 4000}}, at(2));
    EXPECT_TRUE(changes.listChanged);
    EXPECT_TRUE(tracker.downloads().empty());
    EXPECT_EQ(changes.finished, std::vector<std::string>{"film.mkv"});
}

TEST(DownloadTrackerTest, CancelledOrRenamedToAnotherPartialIsNotFinished)
{
    DownloadTracker tracker;
    tracker.update({{"film.mkv", 0}, {"film.mkv.part", 10}}, at(0));
    // Cancelled in Firefox: both go, or the empty placeholder stays.
    EXPECT_TRUE(tracker.update({{"film.mkv", 0}}, at(1)).finished.empty());

    tracker.update({{"Unconfirmed 1.crdownload", 10}}, at(2));
    const auto changes = tracker.update({{"a.zip.crdownload", 20}}, at(3));
    EXPECT_TRUE(changes.finished.empty());
    ASSERT_EQ(tracker.downloads().size(), 1u);
    EXPECT_EQ(tracker.downloads()[0].finalName, "a.zip");
}

TEST(DownloadTrackerTest, NothingNewIsNoChange)
{
    DownloadTracker tracker;
    EXPECT_FALSE(tracker.update({{"a.txt", 1}}, at(0)).listChanged);
    tracker.update({{"b.part", 1}}, at(1));
    const auto changes = tracker.update({{"b.part", 1}, {"c.txt", 3}}, at(2));
    EXPECT_FALSE(changes.listChanged);
    EXPECT_TRUE(changes.finished.empty());
}

TEST(DownloadTrackerTest, ShrinkingFileKeepsItsRateAndSeveralFinishAtOnce)
{
    DownloadTracker tracker;
    tracker.update({{"a.part", 100}, {"b.part", 100}}, at(0));
    tracker.update({{"a.part", 50}, {"b.part", 300}}, at(1)); // a restarted
    EXPECT_EQ(tracker.downloads()[0].bytesPerSecond, 0.0);
    EXPECT_EQ(tracker.downloads()[1].bytesPerSecond, 100.0);
    const auto changes = tracker.update({{"a", 60}, {"b", 400}}, at(2));
    EXPECT_EQ(changes.finished, (std::vector<std::string>{"a", "b"}));
}

} // namespace
} // namespace navro
