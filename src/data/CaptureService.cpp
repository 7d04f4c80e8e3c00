#include "data/CaptureService.h"

#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"
#include "app/QtText.h"
#include "app/SafeStorage.h"
#include "data/DesktopFiles.h"

#include <QBuffer>
#include <QFile>
#include <QMimeDatabase>
#include <QPointer>
#include <QStandardPaths>
#include <QUrl>
#include <QVariantMap>

namespace navro {
namespace {

constexpr std::size_t maxListFileBytes = 1 << 20;

LocalMoment localMoment(WallTime time)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
    const QDate date = local.date();
    const QTime clock = local.time();
    return {date.year(), date.month(), date.day(), clock.hour(), clock.minute(), clock.second()};
}

QString toQString(const std::filesystem::path& path)
{
    return navro::toQString(path.string());
}

} // namespace

std::optional<CaptureMode> captureModeFromRaw(std::string_view raw)
{
    if (raw == "area")
        return CaptureMode::area;
    if (raw == "window")
        return CaptureMode::window;
    if (raw == "screen")
        return CaptureMode::screen;
    return std::nullopt;
}

CaptureService::Folders CaptureService::defaultFolders()
{
    auto folder = [](QStandardPaths::StandardLocation location, const char* name) {
        return std::filesystem::path(QStandardPaths::writableLocation(location).toStdString()) /
               name;
    };
    return {folder(QStandardPaths::PicturesLocation, "Screenshots"),
            folder(QStandardPaths::MoviesLocation, "Screencasts"), dataFolder()};
}

CaptureService::CaptureService(Clock& clock, const AppSettings& settings, ScreenGrabber& grabber,
                               ScreenRecorder& recorder, DesktopFiles& files, Folders folders,
                               QObject* parent)
    : QObject(parent), clock_(clock), settings_(settings), grabber_(grabber), recorder_(recorder),
      files_(files), folders_(std::move(folders))
{
    const auto reason = recorder_.unavailableReason();
    canRecord_ = !reason;
    if (reason)
        logLine("screen recording is unavailable: " + reason->toStdString());
    load();
    publish();
}

CaptureService::~CaptureService() = default;

void CaptureService::choose(CaptureMode mode, void (CaptureService::*then)(const ScreenGrab&))
{
    // One choice at a time: a second request while the overlay is up has nothing to add.
    if (choosing_)
        return;
    choosing_ = true;
    QPointer<CaptureService> self(this);
    grabber_.grab(mode, [self, then](std::optional<ScreenGrab> grab) {
        if (!self)
            return;
        self->choosing_ = false;
        if (grab)
            (self->*then)(*grab);
    });
}

bool CaptureService::takeScreenshot(const QString& mode)
{
    const auto chosen = captureModeFromRaw(mode.toStdString());
    if (!chosen)
        return false;
    choose(*chosen, &CaptureService::screenshotTaken);
    return true;
}

void CaptureService::screenshotTaken(const ScreenGrab& grab)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (grab.image.isNull() || !grab.image.save(&buffer, "PNG")) {
        logLine("could not encode the screenshot");
        return;
    }
    const auto file = freshFile(folders_.screenshots, CaptureKind::screenshot);
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    // The user's own pictures, readable like any other picture of theirs.
    if (const auto error =
            writeFileAtomically(file, std::string_view(png.constData(), png.size()), 0644)) {
        logLine("could not save the screenshot: " + *error);
        return;
    }
    add({file.string(), CaptureKind::screenshot, clock_.now()});
    if (settings_.captureCopy())
        emit imageForClipboard(grab.image);
    emit saved(CaptureKind::screenshot, toQString(file));
}

bool CaptureService::startRecording(const QString& mode)
{
    const auto chosen = captureModeFromRaw(mode.toStdString());
    if (!chosen || !canRecord_ || isRecording_)
        return false;
    choose(*chosen, &CaptureService::recordingAreaChosen);
    return true;
}

void CaptureService::recordingAreaChosen(const ScreenGrab& grab)
{
    if (isRecording_)
        return;
    const auto file = freshFile(folders_.recordings, CaptureKind::recording);
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    const QString path = toQString(file);
    RecordingRequest request{grab.rect, path, settings_.captureMicrophone(),
                             settings_.captureShowClicks()};
    QPointer<CaptureService> self(this);
    const bool started = recorder_.start(request, [self, path](std::optional<QString> failure) {
        if (self)
            self->recordingEnded(path, std::move(failure));
    });
    if (started)
        setRecording(true);
}

void CaptureService::stopRecording()
{
    if (isRecording_)
        recorder_.stop();
}

void CaptureService::recordingEnded(const QString& file, std::optional<QString> failure)
{
    setRecording(false);
    if (failure) {
        logLine("the recording failed: " + excerptForLog(failure->toStdString()));
        return;
    }
    add({file.toStdString(), CaptureKind::recording, clock_.now()});
    if (settings_.captureCopy())
        emit filesForClipboard({file});
    emit saved(CaptureKind::recording, file);
}

void CaptureService::setRecording(bool recording)
{
    if (isRecording_ == recording)
        return;
    isRecording_ = recording;
    recordingStarted_ =
        recording ? QDateTime::fromMSecsSinceEpoch(clock_.now().time_since_epoch().count())
                  : QDateTime();
    emit isRecordingChanged();
}

void CaptureService::shutDown()
{
    if (recorder_.isRunning())
        recorder_.finishBeforeExit();
    setRecording(false);
}

std::filesystem::path CaptureService::freshFile(const std::filesystem::path& folder,
                                                CaptureKind kind) const
{
    const LocalMoment moment = localMoment(clock_.now());
    for (int attempt = 1;; ++attempt) {
        auto file = folder / captureFileName(kind, moment, attempt);
        std::error_code error;
        if (!std::filesystem::exists(file, error))
            return file;
    }
}

const Capture* CaptureService::find(const QString& path) const
{
    const std::string key = path.toStdString();
    for (const Capture& capture : recent_)
        if (capture.path == key)
            return &capture;
    return nullptr;
}

void CaptureService::open(const QString& path)
{
    if (find(path))
        files_.open(path);
}

void CaptureService::showInFolder(const QString& path)
{
    if (find(path))
        files_.showInFolder(path);
}

void CaptureService::copy(const QString& path)
{
    const Capture* capture = find(path);
    if (!capture)
        return;
    if (capture->kind == CaptureKind::screenshot) {
        const FileRead read = readRegularFile(capture->path, 256 << 20);
        QImage image;
        if (read.ok() && image.loadFromData(reinterpret_cast<const uchar*>(read.bytes.data()),
                                            int(read.bytes.size()), "PNG")) {
            emit imageForClipboard(image);
            return;
        }
    }
    emit filesForClipboard({path});
}

void CaptureService::remove(const QString& path)
{
    if (!find(path))
        return;
    QFile file(path);
    if (file.exists() && !file.moveToTrash() && !file.remove())
        logLine("could not delete " + excerptForLog(path.toStdString()));
    std::erase_if(recent_,
                  [&](const Capture& capture) { return capture.path == path.toStdString(); });
    save();
    publish();
}

void CaptureService::refresh()
{
    const auto before = recent_.size();
    std::erase_if(recent_, [](const Capture& capture) {
        std::error_code error;
        return !std::filesystem::exists(capture.path, error);
    });
    if (recent_.size() != before) {
        save();
        publish();
    }
}

void CaptureService::add(Capture capture)
{
    addRecentCapture(recent_, std::move(capture));
    save();
    publish();
}

void CaptureService::load()
{
    const FileRead read = readRegularFile(listFile(), maxListFileBytes);
    if (read.status == FileRead::Status::missing)
        return;
    const std::string name = listFile().filename().string();
    if (!read.ok()) {
        logLine("could not read " + name + ": " + read.reason);
        if (read.status != FileRead::Status::notRegular)
            SafeStorage::backUpUnreadable(listFile(), clock_.now());
        return;
    }
    auto decoded = decodeRecentCaptures(read.bytes);
    if (!decoded.captures) {
        logLine(name + " is damaged: " + decoded.error);
        SafeStorage::backUpUnreadable(listFile(), clock_.now());
        return;
    }
    recent_ = std::move(*decoded.captures);
    refresh();
}

void CaptureService::save()
{
    std::optional<FileError> error = makePrivateFolder(folders_.data);
    if (!error)
        error = writeFileAtomically(listFile(), encodeRecentCaptures(recent_));
    if (error && !loggedSaveFailure_)
        logLine("could not save " + listFile().filename().string() + ": " + *error +
                "; trying again with the next capture");
    loggedSaveFailure_ = error.has_value();
}

void CaptureService::publish()
{
    const QMimeDatabase types;
    QVariantList list;
    for (const Capture& capture : recent_) {
        const QString path = navro::toQString(capture.path);
        const QMimeType type = types.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
        std::error_code error;
        list.append(QVariantMap{
            {QStringLiteral("path"), path},
            {QStringLiteral("url"), QUrl::fromLocalFile(path)},
            {QStringLiteral("name"), toQString(std::filesystem::path(capture.path).filename())},
            {QStringLiteral("kind"), capture.kind == CaptureKind::screenshot
                                         ? QStringLiteral("screenshot")
                                         : QStringLiteral("recording")},
            {QStringLiteral("date"),
             QDateTime::fromMSecsSinceEpoch(capture.date.time_since_epoch().count())},
            {QStringLiteral("exists"), std::filesystem::exists(capture.path, error)},
            {QStringLiteral("isImage"), capture.kind == CaptureKind::screenshot},
            {QStringLiteral("icon"), type.iconName()},
            {QStringLiteral("genericIcon"), type.genericIconName()},
        });
    }
    if (list == recentList_)
        return;
    recentList_ = std::move(list);
    emit recentChanged();
}

} // namespace navro
