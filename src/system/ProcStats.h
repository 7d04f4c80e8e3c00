#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace navro {

// The processor's time counters of /proc/stat's first line, summed over every core, in the
// kernel's ticks. Only differences between two readings mean anything.
struct CpuTimes {
    std::uint64_t busy = 0;
    std::uint64_t total = 0;
    bool operator==(const CpuTimes&) const = default;
};

// The "cpu" line of /proc/stat; none when the text has no well-formed one.
std::optional<CpuTimes> parseProcStat(std::string_view text);

// The share of time the processor worked between two readings, 0…1; none when no time passed
// or the counters went backwards (a wrapped or reset counter).
std::optional<double> cpuLoad(const CpuTimes& before, const CpuTimes& after);

// Memory in KiB as /proc/meminfo gives it.
struct MemoryUse {
    std::uint64_t totalKiB = 0;
    std::uint64_t availableKiB = 0;
    std::uint64_t usedKiB() const { return totalKiB - availableKiB; }
    double share() const { return totalKiB == 0 ? 0.0 : double(usedKiB()) / double(totalKiB); }
    bool operator==(const MemoryUse&) const = default;
};

// MemTotal and MemAvailable of /proc/meminfo (kernels before 3.14 lack MemAvailable: MemFree,
// Buffers and Cached stand in for it). None without a total.
std::optional<MemoryUse> parseMemInfo(std::string_view text);

// The last `capacity` values, oldest first: the one-minute graphs.
class SampleHistory {
public:
    explicit SampleHistory(std::size_t capacity) : capacity_(capacity) {}
    void add(double value);
    const std::vector<double>& values() const { return values_; }
    void clear() { values_.clear(); }

private:
    std::size_t capacity_;
    std::vector<double> values_;
};

} // namespace navro
