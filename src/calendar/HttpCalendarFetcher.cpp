#include "app/Log.h"
#include "calendar/CalendarFetcher.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

namespace navro {

HttpCalendarFetcher::HttpCalendarFetcher(std::chrono::milliseconds timeout) : timeout_(timeout) {}

HttpCalendarFetcher::~HttpCalendarFetcher() = default;

void HttpCalendarFetcher::fetch(const QString& address, const QString& etag,
                                const QString& lastModified, QObject* context, Done done)
{
    if (!network_)
        network_ = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest request{QUrl(address)};
    request.setTransferTimeout(int(timeout_.count()));
    request.setRawHeader("Accept", "text/calendar, */*;q=0.5");
    if (!etag.isEmpty())
        request.setRawHeader("If-None-Match", etag.toUtf8());
    if (!lastModified.isEmpty())
        request.setRawHeader("If-Modified-Since", lastModified.toUtf8());
    QNetworkReply* reply = network_->get(request);
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received) {
        if (received > maxBytes) {
            reply->setProperty("tooLarge", true);
            reply->abort();
        }
    });
    const std::string timeoutSeconds =
        QString::number(double(timeout_.count()) / 1000).toStdString();
    QPointer<QObject> alive(context);
    QObject::connect(
        reply, &QNetworkReply::finished, reply,
        [reply, alive, timeoutSeconds, done = std::move(done)] {
            reply->deleteLater();
            if (!alive)
                return;
            CalendarFetch result;
            const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
            if (reply->property("tooLarge").toBool()) {
                result.error = "larger than any calendar";
            } else if (reply->error() == QNetworkReply::OperationCanceledError) {
                result.error = "no answer within " + timeoutSeconds + " s";
            } else if (status == 304) {
                result.status = CalendarFetch::Status::notModified;
            } else if (reply->error() != QNetworkReply::NoError || status >= 300) {
                result.error = status > 0 ? "HTTP " + std::to_string(status)
                                          : excerptForLog(reply->errorString().toStdString());
            } else {
                result.status = CalendarFetch::Status::fetched;
                result.body = reply->readAll().toStdString();
                result.etag = QString::fromLatin1(reply->rawHeader("ETag"));
                result.lastModified = QString::fromLatin1(reply->rawHeader("Last-Modified"));
            }
            done(std::move(result));
        });
}

} // namespace navro
