#include "platform/linux/NowPlayingHelper.h"

#include <QCoreApplication>
#include <QLocale>

namespace navro {

NowPlayingHelper::NowPlayingHelper(QString program, QObject* parent)
    : QObject(parent), program_(std::move(program))
{
}

NowPlayingHelper::~NowPlayingHelper()
{
    stop();
}

QString NowPlayingHelper::besideThisProgram()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/navro-nowplaying");
}

void NowPlayingHelper::start(Handlers handlers)
{
    if (process_)
        return;
    handlers_ = std::move(handlers);
    auto* process = new QProcess(this);
    process_ = process;
    process->setProgram(program_);
    connect(process, &QProcess::readyReadStandardOutput, this, [this, process] {
        const QByteArray chunk = process->readAllStandardOutput();
        if (!chunk.isEmpty() && handlers_.output)
            handlers_.output(chunk);
    });
    connect(process, &QProcess::readyReadStandardError, this, [this, process] {
        const QByteArray chunk = process->readAllStandardError();
        if (!chunk.isEmpty() && handlers_.errorOutput)
            handlers_.errorOutput(chunk);
    });
    connect(process, &QProcess::finished, this, [this, process] {
        process->deleteLater();
        process_ = nullptr;
        if (handlers_.exited)
            handlers_.exited();
    });
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
        // A crash also finishes the process and is reported there; a failed start is not.
        if (error != QProcess::FailedToStart)
            return;
        const QString reason = process->errorString();
        process->deleteLater();
        process_ = nullptr;
        if (handlers_.failedToStart)
            handlers_.failedToStart(reason);
    });
    process->start(QIODevice::ReadOnly);
}

void NowPlayingHelper::stop()
{
    handlers_ = {};
    QProcess* process = process_;
    process_ = nullptr;
    if (!process)
        return;
    disconnect(process, nullptr, this, nullptr);
    // It ends at once on SIGTERM; the short wait only collects it.
    process->terminate();
    if (!process->waitForFinished(1000)) {
        process->kill();
        process->waitForFinished(1000);
    }
    delete process;
}

void NowPlayingHelper::send(Command command, const QString& player)
{
    runOnce({QStringLiteral("send"), QString::number(int(command))}, player, nullptr);
}

void NowPlayingHelper::seek(double seconds, const QString& player)
{
    runOnce({QStringLiteral("seek"), QString::number(seconds, 'g', QLocale::FloatingPointShortest)},
            player, nullptr);
}

void NowPlayingHelper::raise(const QString& player, std::function<void(bool raised)> done)
{
    runOnce({QStringLiteral("raise")}, player, std::move(done));
}

void NowPlayingHelper::runOnce(QStringList arguments, const QString& player,
                               std::function<void(bool)> done)
{
    if (!player.isEmpty())
        arguments << QStringLiteral("--player") << player;
    auto* process = new QProcess(this);
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    connect(process, &QProcess::finished, this,
            [process, done](int code, QProcess::ExitStatus status) {
                process->deleteLater();
                if (done)
                    done(status == QProcess::NormalExit && code == 0);
            });
    connect(process, &QProcess::errorOccurred, this, [process, done](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        process->deleteLater();
        if (done)
            done(false);
    });
    process->start(program_, arguments, QIODevice::NotOpen);
}

} // namespace navro
