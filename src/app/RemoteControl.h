#pragma once

#include "app/Log.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace navro {

// What another process can read about the running Navro.
struct RemoteState {
    QString status = QStringLiteral("closed"); // "open" or "closed"
    QString selectedTab = QStringLiteral("home");
    QString activityKind; // "" when the closed notch shows no activity
    bool notchEnabled = true;
    bool panelVisible = false;                    // the notch window is on screen
    QString language = QStringLiteral("english"); // what is shown: "english" or "arabic"
    QString activityTitle;  // a notice's first line, as the closed notch shows it
    QString activityDetail; // and its second line

    bool operator==(const RemoteState&) const = default;
};

// The timer as another process sees it.
struct RemoteTimer {
    QString state = QStringLiteral("idle"); // "idle", "running", "paused" or "finished"
    double remaining = 0;                   // seconds left at the moment of reading
    double total = 0;                       // the session's length in seconds, 0 without one
    bool focus = false;                     // a focus session
};

// What another process can read about the track that plays, as it was at its last change.
struct RemoteNowPlaying {
    QString title, artist, album;
    QString app; // the player's name as Navro shows it
    bool playing = false;
    double elapsed = 0; // seconds, at the moment of the change
    double duration = 0;

    bool operator==(const RemoteNowPlaying&) const = default;
};

// The next of the five prayers, for status bars. Instants are ISO 8601 in UTC.
struct RemoteNextPrayer {
    QString prayer; // "fajr", "dhuhr", "asr", "maghrib" or "isha"
    QString at;
    QString city; // in English
    bool operator==(const RemoteNextPrayer&) const = default;
};

// The next meeting of the user's calendars (not all-day, not ended).
struct RemoteNextMeeting {
    QString title, start, end;
    QString joinLink; // empty when it has none
    bool operator==(const RemoteNextMeeting&) const = default;
};

// An operation that takes a name either does what it was asked or refuses, changing nothing,
// with a message for the caller.
using RemoteRefusal = std::optional<QString>;

// The refusal of a name that is none of `valid`: it names them all. The name given comes from
// another process and is cut short.
inline QString unknownChoice(const QString& what, const QString& given, const QStringList& valid)
{
    return QStringLiteral("unknown %1 \"%2\"; the %1s are %3")
        .arg(what, QString::fromStdString(excerptForLog(given.toStdString(), 100)),
             valid.join(QStringLiteral(", ")));
}

// The system volume as another process sees it.
struct RemoteVolume {
    double volume = 0; // 0…1
    bool muted = false;
    QString output;      // the current output's name
    QStringList outputs; // the names of the outputs one can choose

    bool operator==(const RemoteVolume&) const = default;
};

// The operations another process may ask of the running Navro; implemented by the application's
// composition root. Every call arrives on the main thread.
class RemoteControl {
public:
    virtual ~RemoteControl() = default;
    virtual void open(bool focus) = 0;
    virtual void close() = 0;
    virtual void toggle() = 0;
    virtual void showOnboarding() = 0;
    virtual RemoteRefusal openSettings(const QString& page) = 0; // "general", "prayer" or "about"
    // Opens the notch with keyboard focus on the tab with that id ("clipboard" …); refused, with
    // nothing changed, when no tab has that id.
    virtual RemoteRefusal openTab(const QString& tab) = 0;
    virtual RemoteState remoteState() const = 0;
    virtual RemoteTimer remoteTimer() const = 0;
    // A new timer of `minutes`; refused, with nothing changed, when that is no valid length.
    virtual RemoteRefusal startTimer(double minutes, bool focus) = 0;
    virtual void stopTimer() = 0;
    // Nothing while nothing plays.
    virtual std::optional<RemoteNowPlaying> remoteNowPlaying() const { return std::nullopt; }
    // Screen capture with mode "area", "window" or "screen"; refused, and nothing happens, for
    // another mode (and for a recording that cannot start).
    virtual RemoteRefusal takeScreenshot(const QString& mode)
    {
        return unknownChoice(QStringLiteral("mode"), mode, {});
    }
    virtual RemoteRefusal startRecording(const QString& mode)
    {
        return unknownChoice(QStringLiteral("mode"), mode, {});
    }
    virtual void stopRecording() {}
    virtual std::optional<RemoteNextPrayer> remoteNextPrayer() const { return std::nullopt; }
    virtual std::optional<RemoteNextMeeting> remoteNextMeeting() const { return std::nullopt; }
    virtual RemoteVolume remoteVolume() const { return {}; }
    // The devices and transfers as the Devices tab lists them: "batteries", "onCharger",
    // "bluetooth", "drives", "usb", "displays" and "transfers".
    virtual QVariantMap remoteDevices() const { return {}; }
    // Clamped to 0…1.
    virtual void setVolume(double) {}
    virtual void toggleMute() {}
    // Makes the output with that name the default; refused, with nothing changed, when there is
    // none.
    virtual RemoteRefusal selectOutput(const QString& name)
    {
        return unknownChoice(QStringLiteral("output"), name, {});
    }
};

// Publishes a RemoteControl to other processes for as long as it lives.
class RemoteControlPublisher {
public:
    virtual ~RemoteControlPublisher() = default;
    // The owner calls this after anything in RemoteState may have changed; the publisher reads
    // remoteState() again and tells listeners only when it really differs.
    virtual void stateChanged() = 0;
    // The owner calls this on every change of the timer's phase (not on the seconds going by);
    // listeners hear of each.
    virtual void timerChanged() = 0;
    // Likewise for remoteNowPlaying().
    virtual void nowPlayingChanged() = 0;
    // After anything in remoteNextPrayer() or remoteNextMeeting() may have changed; listeners
    // hear of real changes only.
    virtual void nextPrayerChanged() {}
    virtual void nextMeetingChanged() {}
    // Likewise for remoteVolume().
    virtual void volumeChanged() = 0;
    // Likewise for remoteDevices().
    virtual void devicesChanged() = 0;
};

// For a launch that finds another Navro running: asks it, over the session bus, to open its notch
// with keyboard focus. That one may still be starting, so its name is waited for up to
// `patience`. Nothing when it was asked (this process should then exit 0), else why it could not
// be. Defined by the platform library.
std::optional<std::string> handOverToRunningInstance(std::chrono::milliseconds patience);

// Publishes `target` (which must outlive the result) for as long as the result lives. Without a
// session bus Navro runs on without it after one log line, and publishes as soon as a bus comes
// (back). Defined by the platform library.
std::unique_ptr<RemoteControlPublisher> publishRemoteControl(RemoteControl& target);

} // namespace navro
