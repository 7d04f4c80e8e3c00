#include "notch/ActivityRule.h"

namespace navro {

bool meetingIsImminent(const Meeting& meeting, WallTime now)
{
    using namespace std::chrono_literals;
    const auto untilStart = meeting.start - now;
    return untilStart > -300s && untilStart <= 600s && meeting.end > now;
}

std::optional<ClosedActivity> computeActivity(const ActivityInputs& inputs)
{
    if (inputs.isRecording)
        return ClosedActivity::recording();
    if (inputs.toast)
        return ClosedActivity::ofToast(*inputs.toast);
    if (inputs.timerState != TimerState::idle)
        return ClosedActivity::timer();
    if (inputs.calendarInNotch && inputs.nextMeeting &&
        meetingIsImminent(*inputs.nextMeeting, inputs.now))
        return ClosedActivity::ofMeeting(*inputs.nextMeeting);
    if (inputs.transfersInNotch && inputs.hasTransfers)
        return ClosedActivity::transfer();
    if (inputs.musicInNotch && inputs.playbackRate && *inputs.playbackRate > 0)
        return ClosedActivity::music();
    return std::nullopt;
}

} // namespace navro
