#include "notch/ActivityCenter.h"

#include "app/AppSettings.h"
#include "app/Log.h"
#include "notch/ActivityVariant.h"

#include <QUuid>
#include <cmath>

namespace navro {
namespace {

constexpr Duration refreshInterval = std::chrono::seconds(15);
// Longer than any notice is meant to stay; keeps a wild duration from overflowing the clock.
constexpr double longestToastSeconds = 24 * 60 * 60;

} // namespace

ActivityCenter::ActivityCenter(Clock& clock, const AppSettings& settings, QObject* parent)
    : QObject(parent), clock_(clock), settings_(settings), evaluationTask_(clock.makeSlot()),
      refreshTask_(clock.makeSlot()), toastTask_(clock.makeSlot())
{
    connect(&settings_, &AppSettings::settingsChanged, this, &ActivityCenter::requestEvaluation);
    current_ = computeActivity(snapshot());
}

ActivityCenter::~ActivityCenter() = default;

QVariantMap ActivityCenter::currentMap() const
{
    return toVariantMap(current_);
}

QVariantMap ActivityCenter::toastMap() const
{
    return toVariantMap(toast_);
}

Toast ActivityCenter::makeToast(std::string symbol, std::string title, std::string detail,
                                std::optional<std::uint32_t> tint)
{
    return Toast{QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString(),
                 std::move(symbol), std::move(title), std::move(detail), tint};
}

void ActivityCenter::showToast(Toast toast, double seconds)
{
    if (toast.id.empty()) {
        // Expiry is matched by id; a notice without one would be cleared by an older expiry.
        toast.id = makeToast({}, {}, {}).id;
    }
    if (!std::isfinite(seconds) || seconds < 0) {
        logLine("toast \"" + toast.title + "\" asked for an invalid duration; showing it briefly");
        seconds = 0;
    }
    seconds = std::min(seconds, longestToastSeconds);

    const std::string id = toast.id;
    toast_ = std::move(toast);
    emit toastChanged();
    requestEvaluation();
    toastTask_->schedule(navro::seconds(seconds), [this, id] {
        if (!toast_ || toast_->id != id)
            return;
        toast_.reset();
        emit toastChanged();
        requestEvaluation();
    });
}

void ActivityCenter::update()
{
    ++evaluations_;
    auto next = computeActivity(snapshot());
    if (next == current_)
        return;
    current_ = std::move(next);
    emit currentChanged();
}

void ActivityCenter::setRecording(bool isRecording)
{
    if (isRecording_ == isRecording)
        return;
    isRecording_ = isRecording;
    requestEvaluation();
}

void ActivityCenter::setTimerState(TimerState state)
{
    if (timerState_ == state)
        return;
    timerState_ = state;
    requestEvaluation();
}

void ActivityCenter::setNextMeeting(std::optional<Meeting> meeting)
{
    if (nextMeeting_ == meeting)
        return;
    nextMeeting_ = std::move(meeting);
    requestEvaluation();
    scheduleRefresh();
}

void ActivityCenter::setTransfersInProgress(bool any)
{
    if (hasTransfers_ == any)
        return;
    hasTransfers_ = any;
    requestEvaluation();
}

void ActivityCenter::setPlaybackRate(std::optional<double> rate)
{
    if (rate && !std::isfinite(*rate)) {
        logLine("now playing reported a playback rate that is not a number; taking it as paused");
        rate = 0.0;
    }
    if (playbackRate_ == rate)
        return;
    playbackRate_ = rate;
    requestEvaluation();
}

void ActivityCenter::notePrayerChanged()
{
    requestEvaluation();
}

void ActivityCenter::noteClockChanged()
{
    requestEvaluation();
    scheduleRefresh();
}

ActivityInputs ActivityCenter::snapshot() const
{
    ActivityInputs inputs;
    inputs.now = clock_.now();
    inputs.isRecording = isRecording_;
    inputs.toast = toast_;
    inputs.timerState = timerState_;
    inputs.calendarInNotch = settings_.calendarInNotch();
    inputs.nextMeeting = nextMeeting_;
    inputs.transfersInNotch = settings_.transfersInNotch();
    inputs.hasTransfers = hasTransfers_;
    inputs.musicInNotch = settings_.musicInNotch();
    inputs.playbackRate = playbackRate_;
    return inputs;
}

void ActivityCenter::requestEvaluation()
{
    // One evaluation per turn, after every change of this turn has landed.
    if (!evaluationTask_->isPending())
        evaluationTask_->schedule(Duration::zero(), [this] { update(); });
}

// Time alone changes only whether the next meeting shows. While it may, the activity is looked
// at again every 15 s; before its window opens, once when it does; without a meeting or after
// its window, time changes nothing and nothing wakes.
void ActivityCenter::scheduleRefresh()
{
    refreshTask_->cancel();
    if (!nextMeeting_)
        return;
    const MeetingWindow window = meetingWindow(*nextMeeting_);
    const WallTime now = clock_.now();
    if (now >= window.closes)
        return;
    const Duration wait = window.opens > now ? window.opens - now : refreshInterval;
    refreshTask_->schedule(wait, [this] {
        update();
        scheduleRefresh();
    });
}

} // namespace navro
