#pragma once

#include "media/NowPlayingWatcher.h"

#include <QObject>
#include <QPointer>
#include <QProcess>

namespace navro {

// The watcher is navro-nowplaying, installed beside the navro program; the transport commands are
// short runs of the same program (send N, seek S, raise), each with the player's bus name.
class NowPlayingHelper final : public QObject, public NowPlayingWatcher {
    Q_OBJECT

public:
    explicit NowPlayingHelper(QString program = besideThisProgram(), QObject* parent = nullptr);
    ~NowPlayingHelper() override;

    static QString besideThisProgram();

    void start(Handlers handlers) override;
    void stop() override;
    bool isRunning() const override { return process_ != nullptr; }
    void send(Command command, const QString& player) override;
    void seek(double seconds, const QString& player) override;
    void raise(const QString& player, std::function<void(bool raised)> done) override;

private:
    void runOnce(QStringList arguments, const QString& player, std::function<void(bool)> done);

    QString program_;
    QPointer<QProcess> process_;
    Handlers handlers_;
};

} // namespace navro
