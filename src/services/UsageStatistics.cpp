#include "services/UsageStatistics.h"

#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"
#include "app/SafeStorage.h"

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace navro {
namespace {

constexpr std::size_t maxFileBytes = 1024 * 1024;
// Counts come in bursts (a tab opened, then another): one write for the burst.
constexpr Duration saveDelay = std::chrono::seconds(2);

QDateTime localTime(WallTime time)
{
    return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
}

} // namespace

UsageStatistics::UsageStatistics(AppSettings& settings, Clock& clock, QUrl endpoint,
                                 std::filesystem::path file, std::string_view version,
                                 std::chrono::milliseconds timeout, QObject* parent)
    : QObject(parent), settings_(settings), clock_(clock), endpoint_(std::move(endpoint)),
      file_(std::move(file)), version_(version), timeout_(timeout), pendingSave_(clock.makeSlot()),
      nextReport_(clock.makeSlot())
{
}

UsageStatistics::~UsageStatistics()
{
    if (sending_)
        sending_->abort();
}

bool UsageStatistics::isCollecting() const
{
    return hasEndpoint() && settings_.shareUsageStats();
}

void UsageStatistics::start()
{
    if (!hasEndpoint() || started_)
        return;
    started_ = true;
    connect(&settings_, &AppSettings::shareUsageStatsChanged, this,
            &UsageStatistics::followSetting);
    if (!isCollecting()) {
        followSetting();
        return;
    }
    const FileRead read = readRegularFile(file_, maxFileBytes);
    if (read.ok()) {
        auto decoded = decodeUsageRecord(read.bytes);
        if (decoded.record) {
            record_ = std::move(*decoded.record);
        } else {
            logLine(file_.filename().string() + " is damaged (" + decoded.error +
                    "); counting from now");
            SafeStorage::backUpUnreadable(file_, clock_.now());
        }
    } else if (read.status != FileRead::Status::missing) {
        logLine("could not read " + file_.filename().string() + ": " + read.reason +
                "; counting from now");
    }
    ++todayCounts().launches;
    counted();
    planReport();
}

std::string UsageStatistics::today() const
{
    return localTime(clock_.now()).date().toString(Qt::ISODate).toStdString();
}

UsageDay& UsageStatistics::todayCounts()
{
    UsageDay& day = record_.day(today());
    day.language = settings_.isArabic() ? "arabic" : "english";
    return day;
}

void UsageStatistics::noteTabOpened(const QString& tab)
{
    const std::string name = tab.toStdString();
    if (!isCollecting() || !isUsageName(name))
        return;
    ++todayCounts().tabsOpened[name];
    counted();
}

void UsageStatistics::noteFeatureUsed(const QString& feature)
{
    const std::string name = feature.toStdString();
    if (!isCollecting() || !isUsageName(name))
        return;
    ++todayCounts().featuresUsed[name];
    counted();
}

void UsageStatistics::counted()
{
    emit changed();
    if (!pendingSave_->isPending())
        pendingSave_->schedule(saveDelay, [this] { save(); });
}

void UsageStatistics::flush()
{
    if (pendingSave_->isPending()) {
        pendingSave_->cancel();
        save();
    }
}

void UsageStatistics::save()
{
    if (!isCollecting())
        return;
    std::optional<FileError> error = makePrivateFolder(file_.parent_path());
    if (!error)
        error = writeFileAtomically(file_, encodeUsageRecord(record_));
    if (error) {
        // Said once; the next count tries again.
        if (!saveFailed_)
            logLine("could not save " + file_.filename().string() + ": " + *error);
        saveFailed_ = true;
        return;
    }
    if (saveFailed_)
        logLine("saved " + file_.filename().string() + " again");
    saveFailed_ = false;
}

// Off: what was kept goes, and nothing more is counted or sent. On again: counting starts anew.
void UsageStatistics::followSetting()
{
    if (isCollecting()) {
        planReport();
        emit changed();
        return;
    }
    pendingSave_->cancel();
    nextReport_->cancel();
    if (sending_)
        sending_->abort();
    record_ = UsageRecord{};
    std::error_code error;
    std::filesystem::remove(file_, error);
    if (error)
        logLine("could not delete " + file_.filename().string() + ": " + error.message());
    emit changed();
}

// The report goes out for the days that are over, at most once a day: now when one is waiting,
// else just after the next midnight.
void UsageStatistics::planReport()
{
    if (!isCollecting())
        return;
    const std::string day = today();
    const bool waiting = !record_.days.empty() && record_.days.front().date < day;
    if (waiting && record_.lastSent != day && lastAttempt_ != day && !sending_) {
        sendReport();
        return;
    }
    const QDateTime now = localTime(clock_.now());
    const QDateTime midnight(now.date().addDays(1), QTime(0, 0, 1));
    nextReport_->schedule(std::chrono::milliseconds(std::max<qint64>(now.msecsTo(midnight), 1000)),
                          [this] { planReport(); });
}

void UsageStatistics::sendReport()
{
    const std::string day = today();
    std::vector<UsageDay> over;
    for (const UsageDay& kept : record_.days)
        if (kept.date < day)
            over.push_back(kept);
    lastAttempt_ = day;
    if (!network_)
        network_ = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest request(endpoint_);
    request.setTransferTimeout(int(timeout_.count()));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const std::string report = usageReport(over, version_);
    QNetworkReply* reply = network_->post(request, QByteArray::fromStdString(report));
    sending_ = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply] { finishReport(reply); });
}

void UsageStatistics::finishReport(QNetworkReply* reply)
{
    reply->deleteLater();
    sending_.clear();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() == QNetworkReply::OperationCanceledError && !isCollecting())
        return;
    if (reply->error() != QNetworkReply::NoError || status < 200 || status > 299) {
        const std::string why = reply->error() != QNetworkReply::NoError
                                    ? excerptForLog(reply->errorString().toStdString())
                                    : "the server answered " + std::to_string(status);
        logLine(LogPriority::warning, LogChannel::general,
                "could not send the usage statistics: " + why + "; trying again tomorrow");
    } else {
        // Days counted while the report was on its way stay for the next one.
        std::erase_if(record_.days,
                      [this](const UsageDay& day) { return day.date < lastAttempt_; });
        record_.lastSent = lastAttempt_;
        emit changed();
        save();
    }
    planReport();
}

QString UsageStatistics::sharedDocument() const
{
    if (!isCollecting())
        return QString();
    return QString::fromStdString(usageReport(record_.days, version_));
}

} // namespace navro
