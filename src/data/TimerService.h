#pragma once

#include "app/Clock.h"
#include "app/SettingRange.h"
#include "data/TimerPhase.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <filesystem>
#include <memory>

namespace navro {

class AppSettings;
class Shell;
class SleepPreventer;
class SoundPlayer;

// The one countdown behind the Timer tab and the ring of the closed notch. A session is a plain
// timer or a focus session; while one exists the display is kept awake (always for focus, for
// plain timers when timerKeepAwake is on), a focus session runs the user's focus-on action at its
// start and the focus-off action at its end, and a session that runs out plays the finish sound
// and shows "finished" for 8 seconds before going back to idle.
//
// It ticks every 0.25 s only while running; idle, paused and finished it schedules nothing but
// the return to idle. The published countdown (remaining, progress, clockText) changes once a
// second, so whatever draws it redraws once a second.
class TimerService : public QObject {
    Q_OBJECT
    // "idle", "running", "paused" or "finished".
    Q_PROPERTY(QString state READ stateRaw NOTIFY stateChanged)
    Q_PROPERTY(bool isFocus READ isFocus NOTIFY stateChanged)
    // The session's length in seconds; 0 without a session.
    Q_PROPERTY(double total READ total NOTIFY stateChanged)
    // Whole seconds left, the share done (0…1) and the clock text of what is left, in the digits
    // of the interface's language.
    Q_PROPERTY(double remaining READ shownRemaining NOTIFY countdownChanged)
    Q_PROPERTY(double progress READ shownProgress NOTIFY countdownChanged)
    Q_PROPERTY(QString clockText READ clockText NOTIFY countdownChanged)
    // The length the Timer tab offers first: the last one used, when it is one a timer can have.
    Q_PROPERTY(double lastMinutes READ lastMinutes NOTIFY lastMinutesChanged)
    // The focus actions offered in the settings, by name (see loadShortcuts).
    Q_PROPERTY(QStringList shortcuts READ shortcuts NOTIFY shortcutsChanged)
    Q_PROPERTY(QString shortcutsFolder READ shortcutsFolder CONSTANT)

public:
    // `shortcutsFolder` holds the focus actions; it need not exist.
    TimerService(AppSettings& settings, Clock& clock, SleepPreventer& sleepPreventer,
                 SoundPlayer& sound, Shell& shell, std::filesystem::path shortcutsFolder,
                 QObject* parent = nullptr);
    ~TimerService() override;

    const TimerPhase& phase() const { return phase_; }
    TimerState state() const { return phase_.state(); }
    QString stateRaw() const;
    bool isFocus() const { return isFocus_; }
    double total() const { return phase_.total(); }
    double remaining(WallTime at) const { return phase_.remaining(at); }
    double progress(WallTime at) const { return phase_.progress(at); }
    double shownRemaining() const { return shownRemaining_; }
    double shownProgress() const { return shownProgress_; }
    QString clockText() const;
    double lastMinutes() const;
    QStringList shortcuts() const { return shortcuts_; }
    QString shortcutsFolder() const;

    // A new session of `minutes` (more than 0, at most a day; anything else is logged and
    // ignored), replacing any session there is. Returns whether it started.
    Q_INVOKABLE bool start(double minutes, bool focus);
    Q_INVOKABLE void pause();
    // Counts on from what was left when paused.
    Q_INVOKABLE void resume();
    Q_INVOKABLE void addMinute();
    // Ends the session at once, without the finish sound, back to idle.
    Q_INVOKABLE void stop();
    // Leaves the finished state before its 8 seconds are up.
    Q_INVOKABLE void dismiss();
    // The clock text of a duration in seconds, in the digits of the interface's language.
    Q_INVOKABLE QString clock(double seconds) const;

    // Reads the focus actions in the background and publishes them in `shortcuts`.
    Q_INVOKABLE void loadShortcuts();
    // Opens the folder of focus actions in the file manager, creating it first if need be.
    Q_INVOKABLE void openShortcutsApp();

    // Before the process ends: no more ticks, the focus-off action for a focus session, idle,
    // and the display free to sleep.
    void shutDown();

signals:
    // Any change of the phase or of isFocus (start, pause, resume, +1 min, end).
    void stateChanged();
    void countdownChanged();
    void lastMinutesChanged();
    void shortcutsChanged();

private:
    void setPhase(TimerPhase phase);
    // Ending a session: the display may sleep again, and focus goes off after a focus session.
    void endSession();
    void finish();
    void tick();
    void refreshCountdown();
    void updateKeepAwake();
    void runShortcut(const QString& name);

    AppSettings& settings_;
    Clock& clock_;
    SleepPreventer& sleepPreventer_;
    SoundPlayer& sound_;
    Shell& shell_;
    std::filesystem::path shortcutsFolder_;
    std::unique_ptr<TaskSlot> tickTask_;
    std::unique_ptr<TaskSlot> resetTask_;
    TimerPhase phase_ = TimerPhase::idle();
    bool isFocus_ = false;
    bool holdsAssertion_ = false;
    double shownRemaining_ = 0;
    double shownProgress_ = 0;
    QStringList shortcuts_;
    int shortcutsLoads_ = 0;
    // Reading it bounds it; what it reports is remembered so that it is said once.
    mutable BoundedSetting lastMinutes_{lastTimerMinutesRange};
};

} // namespace navro
