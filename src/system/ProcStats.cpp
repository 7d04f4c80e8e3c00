#include "system/ProcStats.h"

#include <algorithm>
#include <charconv>

namespace navro {
namespace {

std::string_view trimmed(std::string_view text)
{
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

// The next whitespace-separated unsigned number of `text`, consumed; none when the next word is
// not one.
std::optional<std::uint64_t> nextNumber(std::string_view& text)
{
    text = trimmed(text);
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || (end != text.data() + text.size() && *end != ' ' && *end != '\t'))
        return std::nullopt;
    text.remove_prefix(std::size_t(end - text.data()));
    return value;
}

// Calls `line` for each line of `text` until it returns true.
template <typename Visit> void forEachLine(std::string_view text, Visit line)
{
    while (!text.empty()) {
        const auto end = text.find('\n');
        if (line(text.substr(0, end)))
            return;
        if (end == std::string_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

} // namespace

std::optional<CpuTimes> parseProcStat(std::string_view text)
{
    std::optional<CpuTimes> result;
    forEachLine(text, [&](std::string_view line) {
        if (!line.starts_with("cpu ") && !line.starts_with("cpu\t"))
            return false;
        line.remove_prefix(4);
        // user nice system idle iowait irq softirq steal [guest guest_nice]: guest time is
        // already counted in user and nice, so it is left out of the total.
        std::uint64_t fields[8] = {};
        int count = 0;
        for (; count < 8; ++count) {
            auto value = nextNumber(line);
            if (!value)
                break;
            fields[count] = *value;
        }
        if (count < 4)
            return true;
        CpuTimes times;
        for (int i = 0; i < count; ++i) {
            if (fields[i] > UINT64_MAX - times.total)
                return true;
            times.total += fields[i];
        }
        const std::uint64_t idle = fields[3] + fields[4]; // idle and waiting for input/output
        times.busy = times.total - idle;
        result = times;
        return true;
    });
    return result;
}

std::optional<double> cpuLoad(const CpuTimes& before, const CpuTimes& after)
{
    if (after.total <= before.total || after.busy < before.busy)
        return std::nullopt;
    const double share = double(after.busy - before.busy) / double(after.total - before.total);
    return std::clamp(share, 0.0, 1.0);
}

std::optional<MemoryUse> parseMemInfo(std::string_view text)
{
    std::optional<std::uint64_t> total, available, free, buffers, cached;
    forEachLine(text, [&](std::string_view line) {
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            return false;
        const std::string_view key = line.substr(0, colon);
        std::string_view rest = line.substr(colon + 1);
        std::optional<std::uint64_t>* slot = key == "MemTotal"       ? &total
                                             : key == "MemAvailable" ? &available
                                             : key == "MemFree"      ? &free
                                             : key == "Buffers"      ? &buffers
                                             : key == "Cached"       ? &cached
                                                                     : nullptr;
        if (!slot || *slot)
            return false;
        auto value = nextNumber(rest);
        rest = trimmed(rest);
        if (value && (rest.empty() || rest == "kB"))
            *slot = value;
        return false;
    });
    if (!total || *total == 0)
        return std::nullopt;
    std::uint64_t availableKiB = 0;
    if (available)
        availableKiB = *available;
    else if (free)
        for (std::uint64_t part : {*free, buffers.value_or(0), cached.value_or(0)})
            availableKiB = part > UINT64_MAX - availableKiB ? UINT64_MAX : availableKiB + part;
    else
        return std::nullopt;
    return MemoryUse{*total, std::min(availableKiB, *total)};
}

void SampleHistory::add(double value)
{
    if (capacity_ == 0)
        return;
    if (values_.size() == capacity_)
        values_.erase(values_.begin());
    values_.push_back(value);
}

} // namespace navro
