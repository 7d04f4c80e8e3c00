#pragma once

#include "app/Clock.h"
#include "notch/ActivityRule.h"
#include "notch/ClosedActivity.h"

#include <QObject>
#include <QVariantMap>
#include <memory>
#include <optional>

namespace navro {

class AppSettings;

// Decides what the closed notch shows and holds the current toast.
//
// Every input change (the setters below, the settings, the toast) asks for one evaluation on the
// next turn of the event loop, when the new values are all in place, so a burst of changes in
// one turn costs one evaluation. What changes with time alone (a meeting entering or leaving its
// window) is caught by a 15-second loop that runs only while the next meeting may be showing,
// with one wake-up when its window opens. current changes only when the computed value differs.
class ActivityCenter : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantMap current READ currentMap NOTIFY currentChanged)
    Q_PROPERTY(QVariantMap toast READ toastMap NOTIFY toastChanged)

public:
    ActivityCenter(Clock& clock, const AppSettings& settings, QObject* parent = nullptr);
    ~ActivityCenter() override;

    const std::optional<ClosedActivity>& current() const { return current_; }
    const std::optional<Toast>& toast() const { return toast_; }
    QVariantMap currentMap() const;
    QVariantMap toastMap() const;

    // A notice with a fresh id, for callers of showToast. tint is 0xRRGGBB.
    static Toast makeToast(std::string symbol, std::string title, std::string detail,
                           std::optional<std::uint32_t> tint = std::nullopt);
    // Shows the notice at once in place of any other, for the given number of seconds.
    void showToast(Toast toast, double seconds);

    // Recomputes now and publishes a real change.
    void update();

    // Inputs, each fed by the service that owns it.
    void setRecording(bool isRecording);                 // capture service: a screen recording runs
    void setTimerState(TimerState state);                // timer service
    void setNextMeeting(std::optional<Meeting> meeting); // calendar service: first upcoming,
                                                         // not all-day, not ended
    void setTransfersInProgress(bool any);               // transfer monitor: its list is not empty
    void setPlaybackRate(std::optional<double> rate);    // now playing: none when no information
    void notePrayerChanged();                            // prayer service: any change
    void noteClockChanged(); // the wall clock was set or the machine woke: the meeting's window
                             // is measured anew

    // How many times the rule has run, to see that bursts of changes stay cheap.
    std::size_t evaluationCount() const { return evaluations_; }

signals:
    void currentChanged();
    void toastChanged();

private:
    ActivityInputs snapshot() const;
    void requestEvaluation();
    void scheduleRefresh();

    Clock& clock_;
    const AppSettings& settings_;
    std::optional<ClosedActivity> current_;
    std::optional<Toast> toast_;
    std::unique_ptr<TaskSlot> evaluationTask_;
    std::unique_ptr<TaskSlot> refreshTask_;
    std::unique_ptr<TaskSlot> toastTask_;
    std::size_t evaluations_ = 0;

    bool isRecording_ = false;
    TimerState timerState_ = TimerState::idle;
    std::optional<Meeting> nextMeeting_;
    bool hasTransfers_ = false;
    std::optional<double> playbackRate_;
};

} // namespace navro
