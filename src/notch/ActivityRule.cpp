#include "notch/ActivityRule.h"

namespace navro {

MeetingWindow meetingWindow(const Meeting& meeting)
{
    using namespace std::chrono_literals;
    return {meeting.start - 10min, std::min(meeting.start + 5min, meeting.end)};
}

bool meetingIsImminent(const Meeting& meeting, WallTime now)
{
    const MeetingWindow window = meetingWindow(meeting);
    return window.opens <= now && now < window.closes;
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
