#include "prayer/PrayerCalculator.h"
#include "prayer/PrayerCity.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace {

using namespace std::chrono;

// Every built-in city under every method, asked for every day of a year: the whole range of
// inputs the app can produce. The calculators are built up front, as the app builds one when a
// setting changes and then asks it day after day.
void timesOverAYear(benchmark::State& state)
{
    std::vector<navro::PrayerCalculator> calculators;
    for (const auto& city : navro::PrayerCity::all())
        for (auto method : navro::allCalculationMethods)
            calculators.emplace_back(city.latitude, city.longitude, city.timeZoneID, method,
                                     navro::AsrMethod::standard, std::string("Asia/Riyadh"));
    const sys_seconds start = sys_days(2026y / 1 / 1) + hours(12);

    std::int64_t calls = 0;
    for (auto _ : state) {
        for (const auto& calculator : calculators) {
            for (int day = 0; day < 365; ++day) {
                auto times = calculator.times(start + days(day));
                benchmark::DoNotOptimize(times);
            }
        }
        calls += std::int64_t(calculators.size()) * 365;
    }
    state.SetItemsProcessed(calls);
    // Seconds per call, printed with an SI prefix (2.5u = 2.5 µs).
    state.counters["per_call"] = benchmark::Counter(double(calls), benchmark::Counter::kIsRate |
                                                                       benchmark::Counter::kInvert);
}
BENCHMARK(timesOverAYear)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
