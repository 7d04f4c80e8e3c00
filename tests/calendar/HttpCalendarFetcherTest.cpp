#include "LocalHttpServer.h"
#include "QtTestApplication.h"
#include "calendar/CalendarFetcher.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using Status = CalendarFetch::Status;

std::optional<CalendarFetch> fetch(HttpCalendarFetcher& fetcher, const QUrl& url,
                                   const QString& etag = {}, const QString& lastModified = {})
{
    std::optional<CalendarFetch> answer;
    QObject context;
    fetcher.fetch(url.toString(), etag, lastModified, &context,
                  [&answer](CalendarFetch fetched) { answer = std::move(fetched); });
    waitFor([&] { return answer.has_value(); });
    return answer;
}

TEST(HttpCalendarFetcher, FetchesThenAsksConditionallyAndHearsItIsUnchanged)
{
    testApplication();
    LocalHttpServer server;
    server.answers[QStringLiteral("/work.ics")] = {
        200, "BEGIN:VCALENDAR", "ETag: \"v1\"\r\nLast-Modified: Sun, 10 Mar 2024 09:00:00 GMT\r\n"};
    HttpCalendarFetcher fetcher(std::chrono::milliseconds(2000));

    const auto first = fetch(fetcher, server.url("/work.ics"));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->status, Status::fetched);
    EXPECT_EQ(first->body, "BEGIN:VCALENDAR");
    EXPECT_EQ(first->etag, "\"v1\"");
    EXPECT_EQ(first->lastModified, "Sun, 10 Mar 2024 09:00:00 GMT");
    EXPECT_FALSE(server.lastRequest.contains("If-None-Match"));

    server.answers[QStringLiteral("/work.ics")] = {304, ""};
    const auto second = fetch(fetcher, server.url("/work.ics"), first->etag, first->lastModified);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->status, Status::notModified);
    EXPECT_TRUE(second->body.empty());
    EXPECT_TRUE(server.lastRequest.contains("If-None-Match: \"v1\"\r\n"));
    EXPECT_TRUE(server.lastRequest.contains("If-Modified-Since: Sun, 10 Mar 2024 09:00:00 GMT"));
}

TEST(HttpCalendarFetcher, FailsWithAReasonOnErrorsAndOnSilence)
{
    testApplication();
    LocalHttpServer server;
    server.answers[QStringLiteral("/broken.ics")] = {500, "oops"};
    HttpCalendarFetcher fetcher(std::chrono::milliseconds(300));

    // A server that takes the request and never answers is given up after the timeout.
    const std::pair<const char*, const char*> failures[] = {{"/gone.ics", "HTTP 404"},
                                                            {"/broken.ics", "HTTP 500"},
                                                            {"/silent", "no answer within 0.3 s"}};
    for (const auto& [path, error] : failures) {
        const auto answer = fetch(fetcher, server.url(path));
        ASSERT_TRUE(answer) << path << ": the fetch must end on its own";
        EXPECT_EQ(answer->status, Status::failed) << path;
        EXPECT_EQ(answer->error, error) << path;
    }

    const auto refused = fetch(fetcher, QUrl("http://127.0.0.1:1/none.ics"));
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, Status::failed);
    EXPECT_FALSE(refused->error.empty());
}

} // namespace
} // namespace navro
