#include "LocalHttpServer.h"
#include "QtTestApplication.h"
#include "app/Log.h"
#include "media/ArtworkDownloader.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

struct Result {
    bool done = false;
    std::optional<QByteArray> body;
};

Result fetch(HttpArtworkDownloader& downloader, const QUrl& url, QObject* context)
{
    Result result;
    downloader.download(url, context, [&result](std::optional<QByteArray> body) {
        result.done = true;
        result.body = std::move(body);
    });
    waitFor([&] { return result.done; });
    return result;
}

TEST(HttpArtworkDownloader, AnswersWithTheBodyOrNothingSaysWhyAndNotAfterTheContextIsGone)
{
    testApplication();
    LocalHttpServer server;
    server.answers[QStringLiteral("/cover.png")] = {200, QByteArray("\x89PNG bytes", 10)};
    server.answers[QStringLiteral("/broken")] = {500, "oops"};
    HttpArtworkDownloader downloader(std::chrono::milliseconds(500));
    QObject context;
    CapturingLogSink log;

    const Result ok = fetch(downloader, server.url("/cover.png"), &context);
    ASSERT_TRUE(ok.done);
    EXPECT_EQ(ok.body, QByteArray("\x89PNG bytes", 10));

    for (const char* path : {"/nowhere", "/broken", "/silent"}) {
        const Result failed = fetch(downloader, server.url(path), &context);
        ASSERT_TRUE(failed.done) << path;
        EXPECT_FALSE(failed.body) << path;
    }
    EXPECT_TRUE(
        log.contains("Navro Now Playing: could not download the artwork http://127.0.0.1:"));
    EXPECT_EQ(log.lines.size(), 3u);

    const Result local = fetch(downloader, QUrl("file:///etc/passwd"), &context);
    ASSERT_TRUE(local.done);
    EXPECT_FALSE(local.body) << "only http(s) is fetched";

    // Nothing arrives once the context is gone.
    bool called = false;
    const int answeredBefore = server.answered;
    {
        QObject gone;
        downloader.download(server.url("/cover.png"), &gone,
                            [&called](std::optional<QByteArray>) { called = true; });
    }
    ASSERT_TRUE(waitFor([&] { return server.answered == answeredBefore + 1; }));
    // A second download after the first answer was sent: by its end the first has arrived too.
    const Result later = fetch(downloader, server.url("/cover.png"), &context);
    ASSERT_TRUE(later.done);
    EXPECT_EQ(later.body, QByteArray("\x89PNG bytes", 10));
    EXPECT_FALSE(called);
}

} // namespace
} // namespace navro
