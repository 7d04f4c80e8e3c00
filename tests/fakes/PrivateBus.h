#pragma once

#include "QtTestApplication.h"

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace navro {

// A private session bus for a whole test program, so that nothing reaches the user's own.
class PrivateBus {
public:
    PrivateBus()
    {
        daemon_.setProgram("dbus-daemon");
        daemon_.setArguments({"--session", "--nofork", "--nopidfile", "--print-address=1",
                              "--address=unix:path=" + folder_.filePath("bus")});
        daemon_.setStandardErrorFile(QProcess::nullDevice());
        daemon_.start();
        QDeadlineTimer deadline(10000);
        while (!address_.contains('\n') && !deadline.hasExpired() &&
               daemon_.state() != QProcess::NotRunning) {
            daemon_.waitForReadyRead(100);
            address_ += daemon_.readAllStandardOutput();
        }
        address_ = address_.trimmed();
    }
    ~PrivateBus()
    {
        daemon_.terminate();
        daemon_.waitForFinished(5000);
    }
    QString address() const { return QString::fromUtf8(address_); }

    static PrivateBus& instance()
    {
        testApplication();
        static PrivateBus bus;
        return bus;
    }

    // A new connection of its own to the private bus.
    static QDBusConnection connect()
    {
        static int connections = 0;
        return QDBusConnection::connectToBus(instance().address(),
                                             QString("private-bus-%1").arg(++connections));
    }

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    QByteArray address_;
};

} // namespace navro
