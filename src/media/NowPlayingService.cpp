#include "media/NowPlayingService.h"

#include "app/AppSettings.h"
#include "app/Log.h"
#include "media/ArtworkDownloader.h"
#include "media/ArtworkImage.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QStringDecoder>
#include <QUrl>
#include <cmath>

namespace navro {
namespace {

constexpr Duration restartDelay = std::chrono::seconds(3);
// A line carries at most a cover of a few megabytes in base64; anything longer is not a line
// the watcher meant to write.
constexpr qsizetype maxLineBytes = 16 * 1024 * 1024;
// Later than any real timestamp and still far from overflowing the clock's milliseconds.
constexpr double maxTimestampMillis = 1e15;

QString toQString(const std::string& text)
{
    return QString::fromStdString(text);
}

std::optional<std::string> nonEmptyString(const QJsonValue& value)
{
    if (!value.isString() || value.toString().isEmpty())
        return std::nullopt;
    return value.toString().toStdString();
}

// JSON numbers only; anything else, and numbers no double can hold, count as 0.
double number(const QJsonValue& value)
{
    const double result = value.isDouble() ? value.toDouble() : 0;
    return std::isfinite(result) ? result : 0;
}

std::optional<WallTime> timestamp(const QJsonValue& value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double millis = value.toDouble();
    if (!std::isfinite(millis) || std::abs(millis) > maxTimestampMillis)
        return std::nullopt;
    return WallTime(Duration(std::llround(millis)));
}

std::string remoteArtworkKey(const NowPlayingInfo& info)
{
    return info.title + "|" + info.artist;
}

} // namespace

NowPlayingService::NowPlayingService(Clock& clock, const AppSettings& settings,
                                     NowPlayingWatcher& watcher, PlayerApplications& applications,
                                     ArtworkDownloader& downloader, QObject* parent)
    : QObject(parent), clock_(clock), settings_(settings), watcher_(watcher),
      applications_(applications), downloader_(downloader), restartTask_(clock.makeSlot()),
      artworkTint_(brandLightColour()), images_(std::make_shared<NowPlayingImages>())
{
    // The player's name follows the interface language.
    connect(&settings_, &AppSettings::isArabicChanged, this, [this] {
        if (!info_)
            return;
        NowPlayingInfo renamed = *info_;
        renamed.appName = resolveAppName(renamed.bundleID);
        setInfo(renamed);
    });
}

NowPlayingService::~NowPlayingService()
{
    stop();
}

QColor NowPlayingService::brandLightColour()
{
    // The brand blue taken 35 % toward white, as artwork tints are.
    return QColor(0x60, 0xaf, 0xff);
}

void NowPlayingService::start()
{
    if (watcher_.isRunning())
        return;
    stopping_ = false;
    restartTask_->cancel();
    launch();
}

void NowPlayingService::stop()
{
    stopping_ = true;
    restartTask_->cancel();
    watcher_.stop();
}

void NowPlayingService::launch()
{
    // What a previous watcher left half-written belongs to no line of the new one.
    buffer_.clear();
    discardingLine_ = false;
    NowPlayingWatcher::Handlers handlers;
    handlers.output = [this](const QByteArray& chunk) { ingest(chunk); };
    handlers.errorOutput = [this](const QByteArray& chunk) { logErrorOutput(chunk); };
    handlers.exited = [this] { onExited(); };
    handlers.failedToStart = [](const QString& reason) {
        logLine(LogChannel::nowPlaying,
                "could not start navro-nowplaying: " + excerptForLog(reason.toStdString()));
    };
    watcher_.start(std::move(handlers));
}

void NowPlayingService::onExited()
{
    if (stopping_)
        return;
    restartTask_->schedule(restartDelay, [this] {
        if (!stopping_ && !watcher_.isRunning())
            launch();
    });
}

void NowPlayingService::logErrorOutput(const QByteArray& chunk)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(chunk);
    if (decoder.hasError())
        return;
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        // A watcher that fails the same way at every restart says so once.
        if (line == lastErrorLine_)
            continue;
        lastErrorLine_ = line;
        logLine(LogChannel::nowPlaying, excerptForLog(line.toStdString()));
    }
}

void NowPlayingService::ingest(const QByteArray& chunk)
{
    qsizetype searchFrom = buffer_.size();
    buffer_.append(chunk);
    qsizetype lineStart = 0;
    for (;;) {
        const qsizetype end = buffer_.indexOf('\n', searchFrom);
        if (end < 0)
            break;
        if (discardingLine_) {
            discardingLine_ = false;
        } else {
            // It works again: a failure that comes back is news.
            lastErrorLine_.clear();
            handle(QByteArrayView(buffer_).sliced(lineStart, end - lineStart));
        }
        lineStart = searchFrom = end + 1;
    }
    buffer_.remove(0, lineStart);
    if (buffer_.size() > maxLineBytes) {
        logLine(LogChannel::nowPlaying, "dropped a line longer than " +
                                            std::to_string(maxLineBytes / (1024 * 1024)) +
                                            " MiB from navro-nowplaying");
        buffer_.clear();
        discardingLine_ = true;
    }
}

void NowPlayingService::handle(QByteArrayView line)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line.toByteArray(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return;
    const QJsonObject object = document.object();

    if (const QJsonValue scriptError = object.value(QLatin1String("error")); scriptError.isString())
        logLine(LogChannel::nowPlayingScript, excerptForLog(scriptError.toString().toStdString()));

    player_ = object.value(QLatin1String("player")).toString();
    const QJsonValue artUrl = object.value(QLatin1String("artUrl"));
    remoteArtworkUrl_ = artUrl.isString() ? artUrl.toString() : QString();

    const auto title = nonEmptyString(object.value(QLatin1String("title")));
    if (!title) {
        clear();
        return;
    }

    NowPlayingInfo next;
    next.title = *title;
    next.artist = object.value(QLatin1String("artist")).toString().toStdString();
    next.album = object.value(QLatin1String("album")).toString().toStdString();
    next.duration = number(object.value(QLatin1String("duration")));
    next.elapsed = number(object.value(QLatin1String("elapsed")));
    next.rate = number(object.value(QLatin1String("rate")));
    next.timestamp = timestamp(object.value(QLatin1String("timestamp")));
    // A web player's parent is the application to name and to open.
    next.bundleID = nonEmptyString(object.value(QLatin1String("parent")));
    if (!next.bundleID)
        next.bundleID = nonEmptyString(object.value(QLatin1String("bundle")));
    reportedApp_ = nonEmptyString(object.value(QLatin1String("app")));
    next.appName = resolveAppName(next.bundleID);

    if (!info_ || info_->bundleID != next.bundleID || appIcon_.isNull())
        setAppIcon(next.bundleID ? applications_.icon(toQString(*next.bundleID)) : QImage());
    if (!info_ || info_->title != next.title)
        setArtwork(QImage());
    setInfo(std::move(next));

    if (const QJsonValue artwork = object.value(QLatin1String("artwork")); artwork.isString()) {
        const auto decoded = QByteArray::fromBase64Encoding(
            artwork.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (decoded) {
            const QImage image = decodeArtwork(*decoded);
            if (!image.isNull())
                setArtwork(image);
        }
    }
    fetchRemoteArtworkIfNeeded();
}

std::optional<std::string>
NowPlayingService::resolveAppName(const std::optional<std::string>& id) const
{
    if (id) {
        if (const auto application = applications_.find(toQString(*id))) {
            const QString& name = settings_.isArabic() && !application->arabicName.isEmpty()
                                      ? application->arabicName
                                      : application->name;
            if (!name.isEmpty())
                return name.toStdString();
        }
    }
    return reportedApp_;
}

void NowPlayingService::clear()
{
    setInfo(std::nullopt);
    setArtwork(QImage());
    setAppIcon(QImage());
}

void NowPlayingService::setInfo(std::optional<NowPlayingInfo> info)
{
    if (info == info_)
        return;
    info_ = std::move(info);
    emit infoChanged();
}

void NowPlayingService::setArtwork(const QImage& image)
{
    const bool hadArtwork = !artwork_.isNull();
    if (!image.isNull() || hadArtwork) {
        artwork_ = image;
        artworkSerial_ = ++pictureSerial_;
        images_->set(NowPlayingImages::Kind::artwork, artwork_);
        emit artworkChanged();
    }
    const QColor tint = navro::artworkTint(image).value_or(brandLightColour());
    if (tint != artworkTint_) {
        artworkTint_ = tint;
        emit artworkTintChanged();
    }
}

void NowPlayingService::setAppIcon(const QImage& image)
{
    if (image.isNull() && appIcon_.isNull())
        return;
    appIcon_ = image;
    appIconSerial_ = ++pictureSerial_;
    images_->set(NowPlayingImages::Kind::appIcon, appIcon_);
    emit appIconChanged();
}

QString NowPlayingService::title() const
{
    return info_ ? toQString(info_->title) : QString();
}

QString NowPlayingService::artist() const
{
    return info_ ? toQString(info_->artist) : QString();
}

QString NowPlayingService::album() const
{
    return info_ ? toQString(info_->album) : QString();
}

QString NowPlayingService::appName() const
{
    return info_ && info_->appName ? toQString(*info_->appName) : QString();
}

QString NowPlayingService::artworkUrl() const
{
    if (artwork_.isNull())
        return {};
    return QStringLiteral("image://nowplaying/artwork/%1").arg(artworkSerial_);
}

QString NowPlayingService::appIconUrl() const
{
    if (appIcon_.isNull())
        return {};
    return QStringLiteral("image://nowplaying/appIcon/%1").arg(appIconSerial_);
}

double NowPlayingService::elapsedNow() const
{
    return elapsedAt(info_, clock_.now());
}

void NowPlayingService::togglePlayPause()
{
    // Shown at once; the watcher's next line brings the player's own word.
    if (info_) {
        NowPlayingInfo flipped = *info_;
        const WallTime now = clock_.now();
        flipped.elapsed = elapsedAt(info_, now);
        flipped.timestamp = now;
        flipped.rate = flipped.rate > 0 ? 0 : 1;
        setInfo(std::move(flipped));
    }
    watcher_.send(NowPlayingWatcher::Command::togglePlayPause, player_);
}

void NowPlayingService::seek(double seconds)
{
    if (!std::isfinite(seconds))
        return;
    seconds = std::max(seconds, 0.0);
    if (info_) {
        NowPlayingInfo moved = *info_;
        moved.elapsed = seconds;
        moved.timestamp = clock_.now();
        setInfo(std::move(moved));
    }
    watcher_.seek(seconds, player_);
}

void NowPlayingService::nextTrack()
{
    watcher_.send(NowPlayingWatcher::Command::nextTrack, player_);
}

void NowPlayingService::previousTrack()
{
    watcher_.send(NowPlayingWatcher::Command::previousTrack, player_);
}

void NowPlayingService::openPlayerApp()
{
    if (!info_ || !info_->bundleID)
        return;
    const QString id = toQString(*info_->bundleID);
    QPointer<NowPlayingService> self(this);
    watcher_.raise(player_, [self, id](bool raised) {
        if (self && !raised && !self->applications_.launch(id))
            logLine(LogChannel::nowPlaying,
                    "could not open the player " + excerptForLog(id.toStdString()));
    });
}

void NowPlayingService::fetchRemoteArtworkIfNeeded()
{
    if (!artwork_.isNull() || !info_ || remoteArtworkUrl_.isEmpty())
        return;
    const std::string key = remoteArtworkKey(*info_);
    if (const QImage* cached = remoteArtworkCache_.find(key)) {
        setArtwork(*cached);
        return;
    }
    // In flight, or failed and not yet asked for again by a later line.
    if (remoteArtworkKey_ == key)
        return;
    remoteArtworkKey_ = key;
    downloader_.download(QUrl(remoteArtworkUrl_), this,
                         [this, key](std::optional<QByteArray> body) {
                             const QImage image = body ? decodeArtwork(*body) : QImage();
                             if (image.isNull()) {
                                 if (remoteArtworkKey_ == key)
                                     remoteArtworkKey_.reset();
                                 return;
                             }
                             remoteArtworkCache_.insert(key, image);
                             if (info_ && remoteArtworkKey(*info_) == key)
                                 setArtwork(image);
                         });
}

} // namespace navro
