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

TEST(ProcStatTest, SumsAllCoresFromTheFirstLineOrNothing)
{
    const std::vector<std::pair<std::string_view, std::optional<CpuTimes>>> table = {
        // Waiting for input or output is idle time, not work.
        {statBefore,
         CpuTimes{3256370u + 1182914 + 3629, 3256370u + 1182914 + 504704 + 2912 + 3629}},
        // Four fields (kernels before 2.5.41) and ten (guest counted in user already).
        {"cpu 10 0 5 85\n", CpuTimes{15, 100}},
        {"cpu 10 0 5 85 0 0 0 0 7 7\n", CpuTimes{15, 100}},
        {"", std::nullopt},
        {"cpu0 1 2 3 4\n", std::nullopt},
        {"cpu 1 2 3\n", std::nullopt},
        {"cpu a b c d\n", std::nullopt},
        {"cpux 1 2 3 4\n", std::nullopt},
        {"cpu 1 2 -3 4\n", std::nullopt},
        {"intr 1\ncpu", std::nullopt},
        {"cpu 18446744073709551615 1 0 0\n", std::nullopt},
        {"cpu 99999999999999999999999 0 0 0\n", std::nullopt},
    };
    for (const auto& [text, expected] : table)
        EXPECT_EQ(parseProcStat(text), expected) << text;
}

TEST(ProcStatTest, LoadBetweenTwoReadingsNeedsTimeToPassForwards)
{
    // 150 ticks of work out of 450.
    const auto load = cpuLoad(*parseProcStat(statBefore), *parseProcStat(statAfter));
    ASSERT_TRUE(load);
    EXPECT_NEAR(*load, 150.0 / 450.0, 1e-9);

    EXPECT_FALSE(cpuLoad({10, 100}, {10, 100}));
    EXPECT_FALSE(cpuLoad({50, 200}, {10, 100}));
    EXPECT_FALSE(cpuLoad({50, 100}, {40, 200})); // busy went backwards: a reset counter
    EXPECT_EQ(cpuLoad({0, 0}, {100, 100}), 1.0);
}

TEST(MemInfoTest, TotalAndAvailableOrNothing)
{
    const std::vector<std::pair<std::string_view, std::optional<MemoryUse>>> table = {
        {"MemTotal:       24683620 kB\nMemFree:        20783668 kB\n"
         "MemAvailable:   23830500 kB\nBuffers:           19960 kB\n"
         "Cached:          2883152 kB\nSwapCached:            0 kB\n",
         MemoryUse{24683620, 23830500}},
        // Without MemAvailable, MemFree, Buffers and Cached (but not SwapCached) stand in.
        {"MemTotal: 1000 kB\nMemFree: 100 kB\nBuffers: 50 kB\nCached: 250 kB\nSwapCached: 999 kB\n",
         MemoryUse{1000, 400}},
        // Available is never above the total.
        {"MemTotal: 100 kB\nMemAvailable: 500 kB\n", MemoryUse{100, 100}},
        {"MemTotal: 100 kB\nMemFree: 18446744073709551615 kB\nCached: 10 kB\n",
         MemoryUse{100, 100}},
        {"", std::nullopt},
        {"MemTotal: 0 kB\nMemAvailable: 0 kB\n", std::nullopt},
        {"MemAvailable: 10 kB\n", std::nullopt},
        {"MemTotal: lots kB\nMemFree: 1 kB\n", std::nullopt},
        {"MemTotal: 100 MB\nMemFree: 1 kB\n", std::nullopt},
        {"MemTotal: 100 kB\n", std::nullopt},
    };
    for (const auto& [text, expected] : table)
        EXPECT_EQ(parseMemInfo(text), expected) << text;

    const MemoryUse use{24683620, 23830500};
    EXPECT_EQ(use.usedKiB(), 24683620u - 23830500u);
    EXPECT_NEAR(use.share(), (24683620.0 - 23830500.0) / 24683620.0, 1e-12);
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
