#include "QtTestApplication.h"
#include "app/Log.h"
#include "media/ArtworkDownloader.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>
#include <map>

namespace navro {
namespace {

// A small HTTP server on 127.0.0.1: each path answers with a fixed status and body; "/silent"
// accepts the request and never answers.
class LocalHttpServer {
public:
    struct Answer {
        int status;
        QByteArray body;
    };

    LocalHttpServer()
    {
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* socket = server_.nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::readyRead, socket,
                                 [this, socket] { respond(socket); });
            }
        });
    }

    QUrl url(const QString& path) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(server_.serverPort()).arg(path));
    }

    std::map<QString, Answer> answers;
    int answered = 0;

private:
    void respond(QTcpSocket* socket)
    {
        const QByteArray request = socket->readAll();
        const QString path = QString::fromLatin1(request.split(' ').value(1));
        if (path == QLatin1String("/silent"))
            return;
        const auto found = answers.find(path);
        const Answer answer = found != answers.end() ? found->second : Answer{404, "missing"};
        socket->write("HTTP/1.1 " + QByteArray::number(answer.status) +
                      " X\r\nContent-Length: " + QByteArray::number(answer.body.size()) +
                      "\r\nConnection: close\r\n\r\n" + answer.body);
        socket->disconnectFromHost();
        ++answered;
    }

    QTcpServer server_;
};

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

TEST(HttpArtworkDownloader, AnswersWithTheBodyOrNothingAndSaysWhy)
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
}

TEST(HttpArtworkDownloader, NothingArrivesOnceTheContextIsGone)
{
    testApplication();
    LocalHttpServer server;
    server.answers[QStringLiteral("/cover.png")] = {200, "bytes"};
    HttpArtworkDownloader downloader;
    bool called = false;
    {
        QObject context;
        downloader.download(server.url("/cover.png"), &context,
                            [&called](std::optional<QByteArray>) { called = true; });
    }
    ASSERT_TRUE(waitFor([&] { return server.answered == 1; }));
    // A second download after the first answer was sent: by its end the first has arrived too.
    QObject probe;
    const Result later = fetch(downloader, server.url("/cover.png"), &probe);
    ASSERT_TRUE(later.done);
    EXPECT_EQ(later.body, QByteArray("bytes"));
    EXPECT_FALSE(called);
}

} // namespace
} // namespace navro
