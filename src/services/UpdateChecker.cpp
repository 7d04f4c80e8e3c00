#include "services/UpdateChecker.h"

#include "app/AppSettings.h"
#include "app/Log.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace navro {
namespace {

double secondsSince1970(WallTime time)
{
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

} // namespace

UpdateChecker::UpdateChecker(AppSettings& settings, Clock& clock, QUrl feed,
                             std::string_view runningVersion, std::chrono::milliseconds timeout,
                             QObject* parent)
    : QObject(parent), settings_(settings), clock_(clock), feed_(std::move(feed)),
      running_(VersionNumber::parse(runningVersion)), timeout_(timeout),
      nextCheck_(clock.makeSlot())
{
}

UpdateChecker::~UpdateChecker()
{
    if (pending_)
        pending_->abort();
}

void UpdateChecker::start()
{
    if (!hasFeed())
        return;
    connect(&settings_, &AppSettings::autoUpdateChanged, this, &UpdateChecker::planNextCheck);
    planNextCheck();
}

// One pending wake-up at the moment the next check falls due, none while autoUpdate is off.
void UpdateChecker::planNextCheck()
{
    if (!settings_.autoUpdate()) {
        nextCheck_->cancel();
        return;
    }
    const double last = settings_.lastUpdateCheck();
    const double now = secondsSince1970(clock_.now());
    const double interval = std::chrono::duration<double>(checkInterval).count();
    // A last check in the future means the clock was set back: count from now instead.
    const double due = last > now ? now : last + interval;
    if (due <= now) {
        checkNow();
        return;
    }
    nextCheck_->schedule(seconds(due - now), [this] { checkNow(); });
}

void UpdateChecker::checkNow()
{
    if (!hasFeed() || pending_)
        return;
    nextCheck_->cancel();
    settings_.setLastUpdateCheck(secondsSince1970(clock_.now()));
    if (!network_)
        network_ = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest request(feed_);
    request.setTransferTimeout(int(timeout_.count()));
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Navro/") +
                          QString::fromStdString(running_ ? running_->text() : "unknown"));
    QNetworkReply* reply = network_->get(request);
    pending_ = reply;
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received) {
        if (received > qint64(maxUpdateFeedBytes)) {
            reply->setProperty("tooLarge", true);
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { finish(reply); });
    setState(QStringLiteral("checking"), offer_);
}

void UpdateChecker::finish(QNetworkReply* reply)
{
    reply->deleteLater();
    pending_.clear();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    std::string problem;
    UpdateFeedReading reading;
    if (reply->property("tooLarge").toBool()) {
        problem = "the feed is larger than " + std::to_string(maxUpdateFeedBytes) + " bytes";
    } else if (status != 0 && status != 200) {
        problem = "the server answered " + std::to_string(status);
    } else if (reply->error() != QNetworkReply::NoError) {
        problem = excerptForLog(reply->errorString().toStdString());
    } else {
        const QByteArray body = reply->readAll();
        reading = parseUpdateFeed(std::string_view(body.constData(), size_t(body.size())));
        problem = reading.error;
    }
    if (!reading.offer) {
        logLine(LogPriority::warning, LogChannel::general,
                "could not check for updates at " + excerptForLog(feed_.toString().toStdString()) +
                    ": " + problem);
        setState(QStringLiteral("failed"), std::nullopt);
    } else if (running_ && running_->compare(reading.offer->version) < 0) {
        setState(QStringLiteral("available"), std::move(reading.offer));
    } else {
        setState(QStringLiteral("upToDate"), std::nullopt);
    }
    planNextCheck();
}

void UpdateChecker::setState(const QString& state, std::optional<UpdateOffer> offer)
{
    if (state == state_ && offer == offer_)
        return;
    state_ = state;
    offer_ = std::move(offer);
    emit changed();
}

QString UpdateChecker::latestVersion() const
{
    return offer_ ? QString::fromStdString(offer_->version.text()) : QString();
}

QString UpdateChecker::notesEnglish() const
{
    return offer_ ? QString::fromStdString(offer_->notesEnglish) : QString();
}

QString UpdateChecker::notesArabic() const
{
    return offer_ ? QString::fromStdString(offer_->notesArabic) : QString();
}

QString UpdateChecker::link() const
{
    return offer_ ? QString::fromStdString(offer_->link) : QString();
}

} // namespace navro
