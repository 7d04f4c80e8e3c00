// The cost of one sample of the menu panel's figures: reading and parsing /proc/stat and
// /proc/meminfo as SystemStats does every 2 s while the panel is shown.
#include "app/FileAccess.h"
#include "system/ProcStats.h"

#include <benchmark/benchmark.h>

namespace {

void oneProcSample(benchmark::State& state)
{
    for (auto _ : state) {
        const auto stat = navro::readRegularFile("/proc/stat", 1024 * 1024);
        const auto meminfo = navro::readRegularFile("/proc/meminfo", 1024 * 1024);
        benchmark::DoNotOptimize(navro::parseProcStat(stat.bytes));
        benchmark::DoNotOptimize(navro::parseMemInfo(meminfo.bytes));
    }
}
BENCHMARK(oneProcSample);

void parseOnly(benchmark::State& state)
{
    const auto stat = navro::readRegularFile("/proc/stat", 1024 * 1024).bytes;
    const auto meminfo = navro::readRegularFile("/proc/meminfo", 1024 * 1024).bytes;
    for (auto _ : state) {
        benchmark::DoNotOptimize(navro::parseProcStat(stat));
        benchmark::DoNotOptimize(navro::parseMemInfo(meminfo));
    }
}
BENCHMARK(parseOnly);

} // namespace

BENCHMARK_MAIN();
