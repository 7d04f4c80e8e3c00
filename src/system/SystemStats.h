#pragma once

#include "app/Clock.h"
#include "system/ProcStats.h"

#include <QObject>
#include <QVariantList>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace navro {

// Processor load and memory in use for the menu panel, with the last minute of each. It samples
// every 2 s only while something shows it (setShown), and not at all otherwise.
class SystemStats : public QObject {
    Q_OBJECT
    // 0…1 each; -1 until the first reading (the processor needs two).
    Q_PROPERTY(double cpu READ cpu NOTIFY sampled)
    Q_PROPERTY(double memory READ memory NOTIFY sampled)
    Q_PROPERTY(double memoryUsedBytes READ memoryUsedBytes NOTIFY sampled)
    Q_PROPERTY(double memoryTotalBytes READ memoryTotalBytes NOTIFY sampled)
    Q_PROPERTY(QVariantList cpuHistory READ cpuHistory NOTIFY sampled)
    Q_PROPERTY(QVariantList memoryHistory READ memoryHistory NOTIFY sampled)

public:
    static constexpr Duration interval = std::chrono::seconds(2);
    static constexpr std::size_t historyLength = 30; // a minute of samples

    // Reads a file of /proc whole; none when it cannot.
    using ReadFile = std::function<std::optional<std::string>(const std::string& path)>;

    SystemStats(Clock& clock, ReadFile read, QObject* parent = nullptr);
    ~SystemStats() override;

    // The reader of the real /proc, through the file discipline.
    static ReadFile procReader();

    // Sampling runs while shown: one sample at once, then every interval.
    Q_INVOKABLE void setShown(bool shown);
    bool isSampling() const { return task_->isPending(); }

    double cpu() const { return cpu_; }
    double memory() const { return memory_ ? memory_->share() : -1; }
    double memoryUsedBytes() const { return memory_ ? double(memory_->usedKiB()) * 1024 : 0; }
    double memoryTotalBytes() const { return memory_ ? double(memory_->totalKiB) * 1024 : 0; }
    QVariantList cpuHistory() const;
    QVariantList memoryHistory() const;

    // One reading of both files; public for the benchmark.
    void sample();

signals:
    void sampled();

private:
    ReadFile read_;
    std::unique_ptr<TaskSlot> task_;
    bool shown_ = false;
    bool saidUnreadable_ = false;
    std::optional<CpuTimes> lastTimes_;
    double cpu_ = -1;
    std::optional<MemoryUse> memory_;
    SampleHistory cpuHistory_{historyLength};
    SampleHistory memoryHistory_{historyLength};
};

} // namespace navro
