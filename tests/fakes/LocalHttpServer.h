#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <map>

namespace navro {

// A small HTTP server on 127.0.0.1: each path answers with a fixed status and body; "/silent"
// accepts the request and never answers. A request is answered once all of it has arrived (its
// body too, by Content-Length).
class LocalHttpServer {
public:
    struct Answer {
        int status;
        QByteArray body;
        QByteArray headers = {}; // extra header lines, each ending in "\r\n"
    };

    LocalHttpServer()
    {
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* socket = server_.nextPendingConnection()) {
                ++connections;
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
    int connections = 0;
    int answered = 0;
    QByteArray lastRequest; // the request line and headers of the last request
    QByteArray lastBody;    // and its body

private:
    void respond(QTcpSocket* socket)
    {
        QByteArray received = socket->property("received").toByteArray() + socket->readAll();
        socket->setProperty("received", received);
        const qsizetype headerEnd = received.indexOf("\r\n\r\n");
        if (headerEnd < 0)
            return;
        const QByteArray head = received.left(headerEnd);
        qsizetype length = 0;
        for (const QByteArray& line : head.split('\n'))
            if (line.toLower().startsWith("content-length:"))
                length = line.mid(15).trimmed().toLongLong();
        if (received.size() < headerEnd + 4 + length)
            return;
        lastRequest = head + "\r\n\r\n";
        lastBody = received.mid(headerEnd + 4, length);
        const QString path = QString::fromLatin1(head.split(' ').value(1));
        if (path == QLatin1String("/silent"))
            return;
        const auto found = answers.find(path);
        const Answer answer = found != answers.end() ? found->second : Answer{404, "missing"};
        socket->write("HTTP/1.1 " + QByteArray::number(answer.status) +
                      " X\r\nContent-Length: " + QByteArray::number(answer.body.size()) +
                      "\r\nConnection: close\r\n" + answer.headers + "\r\n" + answer.body);
        socket->disconnectFromHost();
        ++answered;
    }

    QTcpServer server_;
};

} // namespace navro
