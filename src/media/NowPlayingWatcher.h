#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <functional>
#include <optional>

namespace navro {

// The child process that watches the media players and prints the now-playing lines, and the
// one-shot transport commands that act on the player it reports. `player` is the id the lines
// carry under "player" (empty: the player the watcher would choose now).
class NowPlayingWatcher {
public:
    // The transport commands by the numbers the lines' consumers know them by.
    enum class Command {
        play = 0,
        pause = 1,
        togglePlayPause = 2,
        nextTrack = 4,
        previousTrack = 5
    };

    struct Handlers {
        std::function<void(const QByteArray&)> output;      // a chunk of standard output
        std::function<void(const QByteArray&)> errorOutput; // a chunk of standard error
        std::function<void()> exited;                       // it ended, by itself or killed
        std::function<void(const QString& reason)> failedToStart;
    };

    virtual ~NowPlayingWatcher() = default;

    // Launches the watcher; the handlers are called on this thread until it exits or stop().
    virtual void start(Handlers handlers) = 0;
    // Ends it; no handler is called afterwards.
    virtual void stop() = 0;
    virtual bool isRunning() const = 0;

    // Fire and forget: the watcher's next line tells what came of them.
    virtual void send(Command command, const QString& player) = 0;
    virtual void seek(double seconds, const QString& player) = 0;
    // Brings the player's window forward; `done(false)` when the player cannot.
    virtual void raise(const QString& player, std::function<void(bool raised)> done) = 0;
};

// The installed applications, by the id the lines carry under "bundle".
class PlayerApplications {
public:
    struct Application {
        QString name;       // in the system's language of origin
        QString arabicName; // empty when the application has none
    };

    virtual ~PlayerApplications() = default;
    virtual std::optional<Application> find(const QString& id) = 0;
    // Its icon, drawn; null when it has none.
    virtual QImage icon(const QString& id) = 0;
    // Starts the application; false when there is none by that id or it cannot start.
    virtual bool launch(const QString& id) = 0;
};

} // namespace navro
