#pragma once

#include "data/ScreenCapture.h"

#include <QObject>
#include <QProcess>
#include <memory>

namespace navro {

// Screen recordings with Debian's ffmpeg: x11grab with the pointer drawn, the sound server's
// default input when asked, H.264 and AAC in MP4, which every desktop player opens. The
// recording ends with an interrupt, on which ffmpeg writes the file's index; should Navro itself
// die, the kernel sends ffmpeg that interrupt too.
class FfmpegRecorder final : public QObject, public ScreenRecorder {
    Q_OBJECT

public:
    // `program`: ffmpeg's path, empty when it is not installed.
    FfmpegRecorder(QString program, QString display);
    ~FfmpegRecorder() override;

    // The arguments for a request (the rectangle made even, as H.264 needs).
    static QStringList arguments(const RecordingRequest& request, const QString& display);

    std::optional<QString> unavailableReason() const override;
    bool start(const RecordingRequest& request,
               std::function<void(std::optional<QString>)> finished) override;
    void stop() override;
    bool isRunning() const override;
    void finishBeforeExit() override;

private:
    void ended();

    QString program_;
    QString display_;
    std::unique_ptr<QProcess> process_;
    std::function<void(std::optional<QString>)> finished_;
    QString file_;
    QByteArray errors_;
};

} // namespace navro
