#include "system/SystemStats.h"

#include "ManualClock.h"
#include "app/Log.h"

#include <gtest/gtest.h>
#include <map>

namespace navro {
namespace {

struct SystemStatsTest : ::testing::Test {
    ManualClock clock;
    std::map<std::string, std::string> files = {
        {"/proc/stat", "cpu  100 0 100 800 0 0 0 0 0 0\n"},
        {"/proc/meminfo", "MemTotal: 1000 kB\nMemAvailable: 750 kB\n"}};
    int reads = 0;
    SystemStats stats{clock, [this](const std::string& path) -> std::optional<std::string> {
                          ++reads;
                          const auto it = files.find(path);
                          return it == files.end() ? std::nullopt : std::optional(it->second);
                      }};
};

TEST_F(SystemStatsTest, SamplesOnlyWhileShown)
{
    clock.advance(std::chrono::minutes(1));
    EXPECT_EQ(reads, 0);
    stats.setShown(true);
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(stats.cpu(), -1.0); // a load needs two readings
    EXPECT_DOUBLE_EQ(stats.memory(), 0.25);
    EXPECT_EQ(stats.memoryUsedBytes(), 250.0 * 1024);

    files["/proc/stat"] = "cpu  250 0 150 1000 0 0 0 0 0 0\n"; // 200 of 400 ticks worked
    clock.advance(SystemStats::interval);
    EXPECT_DOUBLE_EQ(stats.cpu(), 0.5);
    EXPECT_EQ(stats.cpuHistory().size(), 1);

    stats.setShown(false);
    const int readsWhenHidden = reads;
    clock.advance(std::chrono::minutes(5));
    EXPECT_EQ(reads, readsWhenHidden);
    EXPECT_FALSE(stats.isSampling());
}

TEST_F(SystemStatsTest, HistoryHoldsTheLastMinute)
{
    stats.setShown(true);
    for (int i = 1; i <= 40; ++i) {
        files["/proc/stat"] = "cpu  " + std::to_string(100 + i * 10) + " 0 100 " +
                              std::to_string(800 + i * 10) + " 0 0 0 0 0 0\n";
        clock.advance(SystemStats::interval);
    }
    EXPECT_EQ(stats.cpuHistory().size(), int(SystemStats::historyLength));
    EXPECT_EQ(stats.memoryHistory().size(), int(SystemStats::historyLength));
    EXPECT_DOUBLE_EQ(stats.cpuHistory().last().toDouble(), 0.5);

    // Shown again later, the graphs start afresh rather than joining an old minute to now.
    stats.setShown(false);
    stats.setShown(true);
    EXPECT_EQ(stats.cpuHistory().size(), 0);
    EXPECT_EQ(stats.memoryHistory().size(), 1);
}

TEST_F(SystemStatsTest, UnreadableFilesLeaveTheFiguresUnknownAndSayItOnce)
{
    files.clear();
    CapturingLogSink log;
    stats.setShown(true);
    clock.advance(SystemStats::interval * 3);
    EXPECT_EQ(stats.cpu(), -1.0);
    EXPECT_EQ(stats.memory(), -1.0);
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("/proc/stat"));
}

TEST_F(SystemStatsTest, TheRealProcIsReadable)
{
    const auto read = SystemStats::procReader();
    const auto stat = read("/proc/stat");
    ASSERT_TRUE(stat);
    EXPECT_TRUE(parseProcStat(*stat));
    ASSERT_TRUE(read("/proc/meminfo"));
    EXPECT_TRUE(parseMemInfo(*read("/proc/meminfo")));
}

} // namespace
} // namespace navro
