#pragma once

#include "app/Clock.h"
#include "services/UsageCounts.h"

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <chrono>
#include <filesystem>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace navro {

class AppSettings;

// Anonymous daily counts, kept in the data folder while shareUsageStats is on and reported once a
// day to the address fixed at build time. Without an address nothing is counted, kept or sent;
// turning the setting off deletes what was kept.
class UsageStatistics final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasEndpoint READ hasEndpoint CONSTANT)
    // The report as the next send would carry it, byte for byte (the days so far, today's
    // included: it goes out once the day is over).
    Q_PROPERTY(QString sharedDocument READ sharedDocument NOTIFY changed)

public:
    UsageStatistics(AppSettings& settings, Clock& clock, QUrl endpoint, std::filesystem::path file,
                    std::string_view version,
                    std::chrono::milliseconds timeout = std::chrono::seconds(20),
                    QObject* parent = nullptr);
    ~UsageStatistics() override;

    // Loads what was kept, counts this launch and plans the day's report.
    void start();
    // Writes counts still waiting for their save.
    void flush();

    void noteTabOpened(const QString& tab);
    void noteFeatureUsed(const QString& feature);

    bool hasEndpoint() const { return !endpoint_.isEmpty(); }
    bool isCollecting() const;
    QString sharedDocument() const;
    const UsageRecord& record() const { return record_; }

signals:
    void changed();

private:
    std::string today() const;
    UsageDay& todayCounts();
    void counted();
    void save();
    void followSetting();
    void planReport();
    void sendReport();
    void finishReport(QNetworkReply* reply);

    AppSettings& settings_;
    Clock& clock_;
    const QUrl endpoint_;
    const std::filesystem::path file_;
    const std::string version_;
    const std::chrono::milliseconds timeout_;
    std::unique_ptr<TaskSlot> pendingSave_;
    std::unique_ptr<TaskSlot> nextReport_;
    std::unique_ptr<QNetworkAccessManager> network_;
    QPointer<QNetworkReply> sending_;
    UsageRecord record_;
    bool started_ = false;
    bool saveFailed_ = false;
    std::string lastAttempt_; // the day of this run's last report, sent or not
};

} // namespace navro
