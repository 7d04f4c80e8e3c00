#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <map>

namespace navro {

// A small HTTP server on 127.0.0.1: each path answers with a fixed status and body; "/silent"
// accepts the request and never answers.
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
    QByteArray lastRequest; // the request line and headers of the last request

private:
    void respond(QTcpSocket* socket)
    {
        const QByteArray request = socket->readAll();
        lastRequest = request;
        const QString path = QString::fromLatin1(request.split(' ').value(1));
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
