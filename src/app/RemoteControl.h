#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace navro {

// What another process can read about the running Navro.
struct RemoteState {
    QString status = QStringLiteral("closed"); // "open" or "closed"
    QString selectedTab = QStringLiteral("home");
    QString activityKind; // "" when the closed notch shows no activity
    bool notchEnabled = true;
    bool panelVisible = false;                    // the notch window is on screen
    QString language = QStringLiteral("english"); // what is shown: "english" or "arabic"

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

// The operations another process may ask of the running Navro; implemented by the application's
// composition root. Every call arrives on the main thread.
class RemoteControl {
public:
    virtual ~RemoteControl() = default;
    virtual void open(bool focus) = 0;
    virtual void close() = 0;
    virtual void toggle() = 0;
    virtual void showOnboarding() = 0;
    virtual void openSettings(const QString& page) = 0; // "general", "prayer" or "about"
    // Opens the notch with keyboard focus on the tab with that id ("clipboard" …). False, and
    // nothing changes, when no tab has that id.
    virtual bool openTab(const QString& tab) = 0;
    virtual RemoteState remoteState() const = 0;
    virtual RemoteTimer remoteTimer() const = 0;
    // A new timer of `minutes`; false, with nothing changed, when that is no valid length.
    virtual bool startTimer(double minutes, bool focus) = 0;
    virtual void stopTimer() = 0;
    // Nothing while nothing plays.
    virtual std::optional<RemoteNowPlaying> remoteNowPlaying() const { return std::nullopt; }
    virtual std::optional<RemoteNextPrayer> remoteNextPrayer() const { return std::nullopt; }
    virtual std::optional<RemoteNextMeeting> remoteNextMeeting() const { return std::nullopt; }
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
};

// For main(), before anything else is built: when another Navro already runs for this user, asks
// it to open its notch with keyboard focus and returns true (this process should then exit 0).
// Defined by the platform library.
bool handOverToRunningInstance();

// Publishes `target` (which must outlive the result). Returns nullptr when that is impossible
// (no session bus: one log line, Navro runs on without it). Defined by the platform library.
std::unique_ptr<RemoteControlPublisher> publishRemoteControl(RemoteControl& target);

} // namespace navro
