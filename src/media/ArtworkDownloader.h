#pragma once

#include <QByteArray>
#include <QObject>
#include <QUrl>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;

namespace navro {

// Fetches a cover from the web in the background.
class ArtworkDownloader {
public:
    using Done = std::function<void(std::optional<QByteArray>)>;
    virtual ~ArtworkDownloader() = default;
    // `done` runs later on this thread with the body of a successful answer, or nothing (the
    // reason logged); never after `context` is gone.
    virtual void download(const QUrl& url, QObject* context, Done done) = 0;
};

// Over http(s) with Qt's network stack: redirects that stay as safe are followed, a transfer that
// stalls for `timeout` is given up, and a body larger than any cover is cut off.
class HttpArtworkDownloader final : public ArtworkDownloader {
public:
    explicit HttpArtworkDownloader(std::chrono::milliseconds timeout = std::chrono::seconds(15));
    ~HttpArtworkDownloader() override;

    void download(const QUrl& url, QObject* context, Done done) override;

    static constexpr qint64 maxBytes = 8 * 1024 * 1024;

private:
    std::chrono::milliseconds timeout_;
    // Made on the first download: most sessions never need one.
    std::unique_ptr<QNetworkAccessManager> network_;
};

} // namespace navro
