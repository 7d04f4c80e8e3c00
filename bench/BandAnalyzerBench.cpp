#include "media/BandAnalyzer.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <numbers>
#include <vector>

// One second of 48 kHz stereo music-like sound (a chord and a little noise) through the
// analyser, in the 40 ms pieces the capture delivers.
static void BM_AnalyseOneSecondOfStereo(benchmark::State& state)
{
    constexpr int rate = 48000;
    constexpr int piece = rate / 25;
    std::vector<float> second(2 * rate);
    unsigned noise = 1;
    for (int i = 0; i < rate; ++i) {
        double value = 0;
        for (double hz : {110.0, 440.0, 1320.0, 5000.0})
            value += 0.2 * std::sin(2 * std::numbers::pi * hz * i / rate);
        noise = noise * 1103515245 + 12345;
        value += 0.02 * (double(noise >> 16 & 0x7fff) / 0x7fff - 0.5);
        second[2 * i] = float(value);
        second[2 * i + 1] = float(value * 0.8);
    }
    navro::BandAnalyzer analyzer;
    for (auto _ : state) {
        for (int start = 0; start < rate; start += piece)
            analyzer.process(second.data() + 2 * start, piece, 2);
        benchmark::DoNotOptimize(analyzer.peakDB());
    }
}
BENCHMARK(BM_AnalyseOneSecondOfStereo)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
