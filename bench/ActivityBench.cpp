#include "notch/ActivityRule.h"

#include <benchmark/benchmark.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

const WallTime now = WallTime(std::chrono::hours(24 * 365 * 56));

// Music playing, a transfer running while transfers are hidden, and a meeting just outside its
// window: the rule walks every step before it answers.
ActivityInputs musicWithAMeetingLater()
{
    ActivityInputs inputs;
    inputs.now = now;
    inputs.nextMeeting = Meeting{"6F1C2B7E-5A43-4C7B-9E0D-2B1A9C3D4E5F",
                                 "Quarterly planning with the design team",
                                 now + 25min,
                                 now + 85min,
                                 false,
                                 "Work",
                                 0x3366ff,
                                 "Meeting room 4, second floor",
                                 "https://meet.example.com/abc-defg-hij"};
    inputs.transfersInNotch = false;
    inputs.hasTransfers = true;
    inputs.playbackRate = 1.0;
    return inputs;
}

void computeWalkingEveryRule(benchmark::State& state)
{
    const auto inputs = musicWithAMeetingLater();
    for (auto _ : state)
        benchmark::DoNotOptimize(computeActivity(inputs));
}
BENCHMARK(computeWalkingEveryRule);

// A meeting in its window: the answer copies the whole meeting record.
void computeImminentMeeting(benchmark::State& state)
{
    auto inputs = musicWithAMeetingLater();
    inputs.nextMeeting->start = now + 5min;
    for (auto _ : state)
        benchmark::DoNotOptimize(computeActivity(inputs));
}
BENCHMARK(computeImminentMeeting);

// What update() does on every change: compute, then compare with the value on screen.
void computeAndCompareWithCurrent(benchmark::State& state)
{
    auto inputs = musicWithAMeetingLater();
    inputs.toast = Toast{"0E9B6A52-1C7D-4F3A-8B2E-5D4C3B2A1F0E", "externaldrive",
                         "Backup drive connected", "1.8 TB available", 0x34c759};
    const auto current = computeActivity(inputs);
    for (auto _ : state) {
        bool same = computeActivity(inputs) == current;
        benchmark::DoNotOptimize(same);
    }
}
BENCHMARK(computeAndCompareWithCurrent);

} // namespace
} // namespace navro

BENCHMARK_MAIN();
