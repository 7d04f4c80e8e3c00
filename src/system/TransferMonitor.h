#pragma once

#include "app/Clock.h"
#include "system/PartialDownloads.h"
#include "system/TransferSources.h"

#include <QObject>
#include <QVariantList>
#include <functional>
#include <memory>

namespace navro {

// The transfers in progress: downloads in the downloads folder, seen as the partial files
// browsers write, and Bluetooth file transfers. A finished one is announced with its file's
// path. The folder's and the service's own events wake it; while a download is listed it looks
// again a second after the last look, so that a stalled one shows its rate falling.
class TransferMonitor : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList transfers READ transfers NOTIFY transfersChanged)
    // The share done over every transfer of known size, 0…1; -1 when no total is known.
    Q_PROPERTY(double progress READ progress NOTIFY transfersChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY transfersChanged)

public:
    TransferMonitor(Clock& clock, WatchedFolder* downloads, WirelessTransferSource* wireless,
                    QObject* parent = nullptr);
    ~TransferMonitor() override;

    void start();

    QVariantList transfers() const;
    double progress() const;
    bool isEmpty() const { return tracker_.downloads().empty() && wireless_.empty(); }

signals:
    void transfersChanged();
    // `name` is what the user reads, `path` the file's full path; `overBluetooth` tells a file
    // sent or received over Bluetooth from a download.
    void finished(const QString& name, const QString& path, bool overBluetooth);

private:
    void scheduleLook(Duration delay);
    void look();
    void applyWireless(const std::optional<std::vector<WirelessTransfer>>& transfers);

    Clock& clock_;
    WatchedFolder* downloads_;
    WirelessTransferSource* wirelessSource_;
    std::unique_ptr<TaskSlot> lookTask_;
    bool awaitingStall_ = false;
    DownloadTracker tracker_;
    std::vector<WirelessTransfer> wireless_;
};

} // namespace navro
