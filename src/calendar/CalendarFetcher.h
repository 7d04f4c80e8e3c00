#pragma once

#include <QObject>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

class QNetworkAccessManager;

namespace navro {

// What asking a subscription link for its calendar gave.
struct CalendarFetch {
    enum class Status { fetched, notModified, failed };
    Status status = Status::failed;
    std::string body;           // the document when fetched
    QString etag, lastModified; // the validators for the next conditional request
    std::string error;          // why it failed, for a log line
};

// Fetches calendar documents from their links.
class CalendarFetcher {
public:
    using Done = std::function<void(CalendarFetch)>;
    virtual ~CalendarFetcher() = default;
    // Asks for `address`, conditionally when a validator of an earlier answer is given. `done`
    // runs once on the main thread, and not at all when `context` is gone by then.
    virtual void fetch(const QString& address, const QString& etag, const QString& lastModified,
                       QObject* context, Done done) = 0;
};

// Over HTTP(S), following redirects, giving up on a server that is silent for `timeout`, and
// refusing documents larger than any real calendar.
class HttpCalendarFetcher final : public CalendarFetcher {
public:
    static constexpr qint64 maxBytes = 32 * 1024 * 1024;

    explicit HttpCalendarFetcher(std::chrono::milliseconds timeout = std::chrono::seconds(30));
    ~HttpCalendarFetcher() override;

    void fetch(const QString& address, const QString& etag, const QString& lastModified,
               QObject* context, Done done) override;

private:
    std::chrono::milliseconds timeout_;
    std::unique_ptr<QNetworkAccessManager> network_;
};

} // namespace navro
