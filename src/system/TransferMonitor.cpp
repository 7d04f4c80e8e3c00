#include "system/TransferMonitor.h"

#include "app/Log.h"
#include "app/QtText.h"

#include <QPointer>
#include <algorithm>
#include <set>

namespace navro {
namespace {

// Writes come in bursts of many per second; one look covers them.
constexpr Duration settle = std::chrono::milliseconds(250);
constexpr Duration stallCheck = std::chrono::seconds(1);

std::string joinPath(const std::string& folder, const std::string& name)
{
    return folder.empty() || folder.back() == '/' ? folder + name : folder + "/" + name;
}

} // namespace

TransferMonitor::TransferMonitor(Clock& clock, WatchedFolder* downloads,
                                 WirelessTransferSource* wireless, QObject* parent)
    : QObject(parent), clock_(clock), downloads_(downloads), wirelessSource_(wireless),
      lookTask_(clock.makeSlot())
{
}

TransferMonitor::~TransferMonitor() = default;

void TransferMonitor::start()
{
    if (downloads_) {
        if (downloads_->start([this] {
                // A pending look for a stall is replaced by a sooner one; a pending settle stays.
                if (!lookTask_->isPending() || awaitingStall_)
                    scheduleLook(settle);
            }))
            look();
        else
            logLine("the downloads folder " + excerptForLog(downloads_->path()) +
                    " cannot be watched; downloads are not shown");
    }
    if (wirelessSource_) {
        QPointer<TransferMonitor> self(this);
        wirelessSource_->start([self](const auto& transfers) {
            if (self)
                self->applyWireless(transfers);
        });
    }
}

void TransferMonitor::scheduleLook(Duration delay)
{
    awaitingStall_ = delay == stallCheck;
    lookTask_->schedule(delay, [this] { look(); });
}

void TransferMonitor::look()
{
    // Sizes of the partial files and of the final names of those known: a large downloads
    // folder costs one listing, not a size for every file in it.
    std::set<std::string> wanted;
    for (const auto& download : tracker_.downloads())
        wanted.insert(download.finalName);
    std::vector<FolderEntry> entries;
    std::vector<std::string> partials;
    for (const std::string& name : downloads_->names()) {
        const bool partial = finalNameOfPartial(name).has_value();
        if (!partial && !wanted.contains(name))
            continue;
        const auto size = downloads_->size(name);
        if (!size)
            continue;
        entries.push_back({name, *size});
        if (partial)
            partials.push_back(name);
    }
    const auto changes = tracker_.update(entries, clock_.now());
    downloads_->watchFiles(partials);
    if (changes.listChanged)
        emit transfersChanged();
    for (const std::string& name : changes.finished)
        emit finished(toQString(name), toQString(joinPath(downloads_->path(), name)), false);
    if (!tracker_.downloads().empty())
        scheduleLook(stallCheck);
}

void TransferMonitor::applyWireless(const std::optional<std::vector<WirelessTransfer>>& reported)
{
    std::vector<WirelessTransfer> next;
    if (reported) {
        for (const auto& transfer : *reported) {
            if (transfer.status == WirelessTransfer::Status::complete) {
                // Said once: only when it was seen unfinished before.
                const bool wasRunning =
                    std::any_of(wireless_.begin(), wireless_.end(),
                                [&](const auto& known) { return known.id == transfer.id; });
                if (wasRunning)
                    emit finished(toQString(transfer.name), toQString(transfer.fileName), true);
                continue;
            }
            if (transfer.status != WirelessTransfer::Status::error)
                next.push_back(transfer);
        }
    }
    if (next == wireless_)
        return;
    wireless_ = std::move(next);
    emit transfersChanged();
}

QVariantList TransferMonitor::transfers() const
{
    QVariantList list;
    for (const auto& download : tracker_.downloads())
        list << QVariantMap{{QStringLiteral("kind"), QStringLiteral("download")},
                            {QStringLiteral("name"), toQString(download.finalName)},
                            {QStringLiteral("bytes"), double(download.bytes)},
                            {QStringLiteral("total"), -1.0},
                            {QStringLiteral("rate"), download.bytesPerSecond}};
    for (const auto& transfer : wireless_)
        list << QVariantMap{
            {QStringLiteral("kind"), QStringLiteral("bluetooth")},
            {QStringLiteral("name"), toQString(transfer.name)},
            {QStringLiteral("bytes"), double(transfer.bytes)},
            {QStringLiteral("total"), transfer.total ? double(*transfer.total) : -1.0},
            {QStringLiteral("rate"), 0.0}};
    return list;
}

double TransferMonitor::progress() const
{
    // Browsers do not say how large a download will be: with one listed, the whole is unknown.
    if (!tracker_.downloads().empty() || wireless_.empty())
        return -1;
    std::uint64_t done = 0, total = 0;
    for (const auto& transfer : wireless_) {
        if (!transfer.total || *transfer.total == 0)
            return -1;
        done += std::min(transfer.bytes, *transfer.total);
        total += *transfer.total;
    }
    return double(done) / double(total);
}

} // namespace navro
