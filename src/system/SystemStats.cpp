#include "system/SystemStats.h"

#include "app/FileAccess.h"
#include "app/Log.h"

namespace navro {
namespace {

// /proc/stat grows with the number of processors and interrupts; a few hundred KiB at most.
constexpr std::size_t procFileCap = 1024 * 1024;

QVariantList toList(const std::vector<double>& values)
{
    QVariantList list;
    list.reserve(qsizetype(values.size()));
    for (double value : values)
        list << value;
    return list;
}

} // namespace

SystemStats::SystemStats(Clock& clock, ReadFile read, QObject* parent)
    : QObject(parent), read_(std::move(read)), task_(clock.makeSlot())
{
}

SystemStats::~SystemStats() = default;

SystemStats::ReadFile SystemStats::procReader()
{
    return [](const std::string& path) -> std::optional<std::string> {
        auto file = readRegularFile(path, procFileCap);
        if (!file.ok())
            return std::nullopt;
        return std::move(file.bytes);
    };
}

void SystemStats::setShown(bool shown)
{
    if (shown == shown_)
        return;
    shown_ = shown;
    if (!shown) {
        task_->cancel();
        return;
    }
    // A gap since the last showing says nothing about now: the graphs start afresh.
    lastTimes_.reset();
    cpuHistory_.clear();
    memoryHistory_.clear();
    sample();
}

void SystemStats::sample()
{
    const auto stat = read_("/proc/stat");
    const auto meminfo = read_("/proc/meminfo");
    const auto times = stat ? parseProcStat(*stat) : std::nullopt;
    const auto memory = meminfo ? parseMemInfo(*meminfo) : std::nullopt;
    if ((!times || !memory) && !saidUnreadable_) {
        logLine(std::string("system statistics: ") + (!times ? "/proc/stat" : "/proc/meminfo") +
                " could not be read; the panel shows no figures for it");
        saidUnreadable_ = true;
    }
    if (times) {
        if (lastTimes_) {
            if (const auto load = cpuLoad(*lastTimes_, *times)) {
                cpu_ = *load;
                cpuHistory_.add(*load);
            }
        }
        lastTimes_ = times;
    }
    if (memory) {
        memory_ = memory;
        memoryHistory_.add(memory->share());
    }
    emit sampled();
    if (shown_)
        task_->schedule(interval, [this] { sample(); });
}

QVariantList SystemStats::cpuHistory() const
{
    return toList(cpuHistory_.values());
}

QVariantList SystemStats::memoryHistory() const
{
    return toList(memoryHistory_.values());
}

} // namespace navro
