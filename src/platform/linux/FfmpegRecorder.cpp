#include "platform/linux/FfmpegRecorder.h"

#include "app/Log.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <csignal>
#include <sys/prctl.h>

namespace navro {
namespace {

// What is kept of ffmpeg's complaints for the log line of a failed recording.
constexpr qsizetype keptErrorBytes = 4096;
constexpr int finishTimeoutMs = 10000;

} // namespace

FfmpegRecorder::FfmpegRecorder(QString program, QString display)
    : program_(std::move(program)), display_(std::move(display))
{
}

FfmpegRecorder::~FfmpegRecorder()
{
    finishBeforeExit();
}

QStringList FfmpegRecorder::arguments(const RecordingRequest& request, const QString& display)
{
    const int width = std::max(2, request.rect.width() & ~1);
    const int height = std::max(2, request.rect.height() & ~1);
    QStringList arguments{
        QStringLiteral("-hide_banner"),
        QStringLiteral("-loglevel"),
        QStringLiteral("error"),
        QStringLiteral("-nostdin"),
        QStringLiteral("-f"),
        QStringLiteral("x11grab"),
        QStringLiteral("-draw_mouse"),
        QStringLiteral("1"),
        QStringLiteral("-framerate"),
        QStringLiteral("30"),
        QStringLiteral("-video_size"),
        QStringLiteral("%1x%2").arg(width).arg(height),
        QStringLiteral("-i"),
        QStringLiteral("%1+%2,%3").arg(display).arg(request.rect.x()).arg(request.rect.y())};
    if (request.microphone)
        arguments << QStringLiteral("-f") << QStringLiteral("pulse") << QStringLiteral("-i")
                  << QStringLiteral("default");
    arguments << QStringLiteral("-c:v") << QStringLiteral("libx264") << QStringLiteral("-preset")
              << QStringLiteral("veryfast") << QStringLiteral("-crf") << QStringLiteral("23")
              << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p");
    if (request.microphone)
        arguments << QStringLiteral("-c:a") << QStringLiteral("aac") << QStringLiteral("-b:a")
                  << QStringLiteral("128k");
    arguments << QStringLiteral("-movflags") << QStringLiteral("+faststart") << QStringLiteral("-y")
              << request.file;
    return arguments;
}

std::optional<QString> FfmpegRecorder::unavailableReason() const
{
    if (program_.isEmpty())
        return QStringLiteral("ffmpeg is not installed");
    if (display_.isEmpty())
        return QStringLiteral("no X display to record");
    return std::nullopt;
}

bool FfmpegRecorder::start(const RecordingRequest& request,
                           std::function<void(std::optional<QString>)> finished)
{
    if (unavailableReason() || isRunning())
        return false;
    process_ = std::make_unique<QProcess>();
    process_->setProgram(program_);
    process_->setArguments(arguments(request, display_));
    process_->setStandardOutputFile(QProcess::nullDevice());
    process_->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGINT); });
    connect(process_.get(), &QProcess::readyReadStandardError, this, [this] {
        errors_ += process_->readAllStandardError();
        if (errors_.size() > keptErrorBytes)
            errors_ = errors_.right(keptErrorBytes);
    });
    connect(process_.get(), &QProcess::finished, this, [this] { ended(); });
    connect(process_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            ended();
    });
    finished_ = std::move(finished);
    file_ = request.file;
    errors_.clear();
    process_->start();
    return true;
}

void FfmpegRecorder::ended()
{
    if (!process_)
        return;
    auto finished = std::move(finished_);
    finished_ = nullptr;
    const QFileInfo file(file_);
    std::optional<QString> failure;
    // Interrupted, ffmpeg exits with 255 after it has finished the file; only a file with
    // something in it counts.
    if (!file.exists() || file.size() == 0)
        failure = QStringLiteral("ffmpeg left no file (%1)")
                      .arg(QString::fromUtf8(errors_.trimmed()).right(400));
    process_.release()->deleteLater();
    if (finished)
        finished(failure);
}

void FfmpegRecorder::stop()
{
    if (isRunning())
        ::kill(pid_t(process_->processId()), SIGINT);
}

bool FfmpegRecorder::isRunning() const
{
    return process_ && process_->state() != QProcess::NotRunning;
}

void FfmpegRecorder::finishBeforeExit()
{
    if (!isRunning())
        return;
    finished_ = nullptr;
    process_->disconnect(this);
    ::kill(pid_t(process_->processId()), SIGINT);
    if (!process_->waitForFinished(finishTimeoutMs))
        logLine("ffmpeg did not finish the recording in time");
    process_.reset();
}

std::unique_ptr<ScreenRecorder> makeScreenRecorder()
{
    return std::make_unique<FfmpegRecorder>(
        QStandardPaths::findExecutable(QStringLiteral("ffmpeg")), qEnvironmentVariable("DISPLAY"));
}

} // namespace navro
