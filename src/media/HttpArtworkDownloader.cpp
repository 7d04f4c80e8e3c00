#include "app/Log.h"
#include "media/ArtworkDownloader.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

namespace navro {

HttpArtworkDownloader::HttpArtworkDownloader(std::chrono::milliseconds timeout) : timeout_(timeout)
{
}

HttpArtworkDownloader::~HttpArtworkDownloader() = default;

void HttpArtworkDownloader::download(const QUrl& url, QObject* context, Done done)
{
    const std::string shown = excerptForLog(url.toString().toStdString());
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https")) {
        logLine(LogChannel::nowPlaying, "artwork address is not http(s): " + shown);
        QMetaObject::invokeMethod(
            context, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    if (!network_)
        network_ = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest request(url);
    request.setTransferTimeout(int(timeout_.count()));
    QNetworkReply* reply = network_->get(request);
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received) {
        if (received > maxBytes) {
            reply->setProperty("tooLarge", true);
            reply->abort();
        }
    });
    QPointer<QObject> alive(context);
    QObject::connect(
        reply, &QNetworkReply::finished, reply, [reply, alive, shown, done = std::move(done)] {
            reply->deleteLater();
            if (!alive)
                return;
            if (reply->error() != QNetworkReply::NoError) {
                const std::string reason = reply->property("tooLarge").toBool()
                                               ? std::string("larger than any cover")
                                               : excerptForLog(reply->errorString().toStdString());
                logLine(LogChannel::nowPlaying,
                        "could not download the artwork " + shown + ": " + reason);
                done(std::nullopt);
                return;
            }
            done(reply->readAll());
        });
}

} // namespace navro
