#include "system/ProcStats.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

// Two readings of a two-core machine, two seconds apart, as the kernel wrote them.
constexpr std::string_view statBefore = "cpu  3256370 0 1182914 504704 2912 0 3629 0 0 0\n"
                                        "cpu0 1620855 0 575916 276482 877 0 1154 0 0 0\n"
                                        "cpu1 1635514 0 606998 228221 2035 0 2474 0 0 0\n"
                                        "intr 123 0 0\nctxt 99\nbtime 1700000000\n";
constexpr std::string_view statAfter = "cpu  3256470 0 1182964 504954 2962 0 3629 0 0 0\n"
                                       "cpu0 1620900 0 575940 276600 900 0 1154 0 0 0\n"
                                       "cpu1 1635570 0 607024 228354 2062 0 2474 0 0 0\n";

TEST(ProcStatTest, SumsAllCoresFromTheFirstLine)
{
    const auto times = parseProcStat(statBefore);
    ASSERT_TRUE(times);
    EXPECT_EQ(times->total, 3256370u + 1182914 + 504704 + 2912 + 3629);
    // Waiting for input or output is idle time, not work.
    EXPECT_EQ(times->busy, 3256370u + 1182914 + 3629);
}

TEST(ProcStatTest, LoadBetweenTwoReadings)
{
    const auto load = cpuLoad(*parseProcStat(statBefore), *parseProcStat(statAfter));
    ASSERT_TRUE(load);
    // 150 ticks of work out of 450.
    EXPECT_NEAR(*load, 150.0 / 450.0, 1e-9);
}

TEST(ProcStatTest, LoadNeedsTimeToPassForwards)
{
    const CpuTimes times{10, 100};
    EXPECT_FALSE(cpuLoad(times, times));
    EXPECT_FALSE(cpuLoad({50, 200}, {10, 100}));
    EXPECT_FALSE(cpuLoad({50, 100}, {40, 200})); // busy went backwards: a reset counter
    EXPECT_EQ(cpuLoad({0, 0}, {100, 100}), 1.0);
}

TEST(ProcStatTest, OlderKernelsWithFewerFieldsAndGuestTimeLeftOut)
{
    // Four fields (kernels before 2.5.41) and ten (guest counted in user already).
    EXPECT_EQ(parseProcStat("cpu 10 0 5 85\n"), (CpuTimes{15, 100}));
    EXPECT_EQ(parseProcStat("cpu 10 0 5 85 0 0 0 0 7 7\n"), (CpuTimes{15, 100}));
}

TEST(ProcStatTest, MalformedTextsYieldNothing)
{
    for (std::string_view text :
         {"", "cpu0 1 2 3 4\n", "cpu 1 2 3\n", "cpu a b c d\n", "cpux 1 2 3 4\n", "cpu 1 2 -3 4\n",
          "intr 1\ncpu", "cpu 18446744073709551615 1 0 0\n", "cpu 99999999999999999999999 0 0 0\n"})
        EXPECT_FALSE(parseProcStat(text)) << text;
}

constexpr std::string_view meminfo = "MemTotal:       24683620 kB\n"
                                     "MemFree:        20783668 kB\n"
                                     "MemAvailable:   23830500 kB\n"
                                     "Buffers:           19960 kB\n"
                                     "Cached:          2883152 kB\n"
                                     "SwapCached:            0 kB\n";

TEST(MemInfoTest, UsedIsTotalLessAvailable)
{
    const auto use = parseMemInfo(meminfo);
    ASSERT_TRUE(use);
    EXPECT_EQ(use->totalKiB, 24683620u);
    EXPECT_EQ(use->usedKiB(), 24683620u - 23830500u);
    EXPECT_NEAR(use->share(), (24683620.0 - 23830500.0) / 24683620.0, 1e-12);
}

TEST(MemInfoTest, WithoutMemAvailableFreeBuffersAndCachedStandIn)
{
    const auto use = parseMemInfo("MemTotal: 1000 kB\nMemFree: 100 kB\nBuffers: 50 kB\n"
                                  "Cached: 250 kB\nSwapCached: 999 kB\n");
    ASSERT_TRUE(use);
    EXPECT_EQ(use->availableKiB, 400u); // SwapCached is not Cached
}

TEST(MemInfoTest, AvailableNeverAboveTotal)
{
    EXPECT_EQ(parseMemInfo("MemTotal: 100 kB\nMemAvailable: 500 kB\n")->usedKiB(), 0u);
    EXPECT_EQ(parseMemInfo("MemTotal: 100 kB\nMemFree: 18446744073709551615 kB\nCached: 10 kB\n")
                  ->usedKiB(),
              0u);
}

TEST(MemInfoTest, MalformedTextsYieldNothing)
{
    for (std::string_view text : {"", "MemTotal: 0 kB\nMemAvailable: 0 kB\n",
                                  "MemAvailable: 10 kB\n", "MemTotal: lots kB\nMemFree: 1 kB\n",
                                  "MemTotal: 100 MB\nMemFree: 1 kB\n", "MemTotal: 100 kB\n"})
        EXPECT_FALSE(parseMemInfo(text)) << text;
}

TEST(SampleHistoryTest, KeepsTheLastValuesOldestFirst)
{
    SampleHistory history(3);
    for (double value : {1.0, 2.0, 3.0, 4.0})
        history.add(value);
    EXPECT_EQ(history.values(), (std::vector<double>{2.0, 3.0, 4.0}));
}

} // namespace
} // namespace navro
