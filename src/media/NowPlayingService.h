#pragma once

#include "app/Clock.h"
#include "media/LruCache.h"
#include "media/NowPlayingImages.h"
#include "media/NowPlayingInfo.h"
#include "media/NowPlayingWatcher.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <string>

namespace navro {

class AppSettings;
class ArtworkDownloader;

// What the machine is playing, and its transport controls.
//
// The watcher child process prints one JSON object per line whenever the player it reports
// changes; `ingest` cuts its output into lines and `handle` turns each into `info`, the artwork
// and its tint, and the player's name and icon. The position is never polled: `elapsedAt`
// extrapolates it from the last report. A watcher that exits is started again 3 s later, for as
// long as the service runs.
class NowPlayingService : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasInfo READ hasInfo NOTIFY infoChanged)
    Q_PROPERTY(QString title READ title NOTIFY infoChanged)
    Q_PROPERTY(QString artist READ artist NOTIFY infoChanged)
    Q_PROPERTY(QString album READ album NOTIFY infoChanged)
    Q_PROPERTY(double duration READ duration NOTIFY infoChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY infoChanged)
    Q_PROPERTY(QString appName READ appName NOTIFY infoChanged)
    // image://nowplaying/… addresses, new for every new picture; empty when there is none.
    Q_PROPERTY(QString artworkUrl READ artworkUrl NOTIFY artworkChanged)
    Q_PROPERTY(QString appIconUrl READ appIconUrl NOTIFY appIconChanged)
    Q_PROPERTY(QColor artworkTint READ artworkTint NOTIFY artworkTintChanged)

public:
    NowPlayingService(Clock& clock, const AppSettings& settings, NowPlayingWatcher& watcher,
                      PlayerApplications& applications, ArtworkDownloader& downloader,
                      QObject* parent = nullptr);
    ~NowPlayingService() override;

    // Launches the watcher unless one runs. stop() ends it for good (until the next start()).
    void start();
    void stop();

    const std::optional<NowPlayingInfo>& info() const { return info_; }
    const QImage& artwork() const { return artwork_; }
    const QImage& appIcon() const { return appIcon_; }
    QColor artworkTint() const { return artworkTint_; }
    // The pictures for the views' image provider.
    std::shared_ptr<const NowPlayingImages> images() const { return images_; }

    bool hasInfo() const { return info_.has_value(); }
    QString title() const;
    QString artist() const;
    QString album() const;
    double duration() const { return info_ ? info_->duration : 0; }
    bool isPlaying() const { return info_ && info_->rate > 0; }
    QString appName() const;
    QString artworkUrl() const;
    QString appIconUrl() const;

    // A chunk of the watcher's standard output, cut anywhere.
    void ingest(const QByteArray& chunk);
    // One line of it, without its line feed.
    void handle(QByteArrayView line);

    // The position now, extrapolated.
    Q_INVOKABLE double elapsedNow() const;
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void seek(double seconds);
    Q_INVOKABLE void nextTrack();
    Q_INVOKABLE void previousTrack();
    // Brings the player forward, or starts its application when it cannot be raised.
    Q_INVOKABLE void openPlayerApp();

    // Without artwork the tint is the brand's light colour.
    static QColor brandLightColour();
    static constexpr std::size_t remoteArtworkCacheSize = 32;

signals:
    void infoChanged();
    void artworkChanged();
    void artworkTintChanged();
    void appIconChanged();

private:
    void launch();
    void onExited();
    void logErrorOutput(const QByteArray& chunk);
    void clear();
    void setInfo(std::optional<NowPlayingInfo> info);
    void setArtwork(const QImage& image);
    void setAppIcon(const QImage& image);
    std::optional<std::string> resolveAppName(const std::optional<std::string>& id) const;
    void fetchRemoteArtworkIfNeeded();

    Clock& clock_;
    const AppSettings& settings_;
    NowPlayingWatcher& watcher_;
    PlayerApplications& applications_;
    ArtworkDownloader& downloader_;
    std::unique_ptr<TaskSlot> restartTask_;

    std::optional<NowPlayingInfo> info_;
    QImage artwork_;
    QImage appIcon_;
    QColor artworkTint_;
    std::shared_ptr<NowPlayingImages> images_;
    quint64 pictureSerial_ = 0;
    quint64 artworkSerial_ = 0;
    quint64 appIconSerial_ = 0;

    QByteArray buffer_;
    QString lastErrorLine_;
    bool discardingLine_ = false;
    bool stopping_ = false;
    // From the last line: the player's own name, its id for the commands, a cover on the web.
    std::optional<std::string> reportedApp_;
    QString player_;
    QString remoteArtworkUrl_;
    std::optional<std::string> remoteArtworkKey_;
    LruCache<std::string, QImage> remoteArtworkCache_{remoteArtworkCacheSize};
};

} // namespace navro
