#pragma once

#include "app/Clock.h"
#include "notch/ClosedActivity.h"
#include "notch/Meeting.h"
#include "notch/Toast.h"

#include <optional>

namespace navro {

enum class TimerState { idle, running, paused, finished };

// Everything the choice of the closed-notch activity depends on, read at one moment.
struct ActivityInputs {
    WallTime now;
    bool isRecording = false;
    std::optional<Toast> toast;
    TimerState timerState = TimerState::idle;
    bool calendarInNotch = true;
    std::optional<Meeting> nextMeeting;
    bool transfersInNotch = true;
    bool hasTransfers = false;
    bool musicInNotch = true;
    // The playback rate of the current track; none when nothing is known to be playing.
    std::optional<double> playbackRate;
};

// A meeting shows from 10 minutes before its start until 5 minutes after it (the later bound
// excluded), and never once it has ended.
struct MeetingWindow {
    WallTime opens;
    WallTime closes; // excluded
};
MeetingWindow meetingWindow(const Meeting& meeting);
bool meetingIsImminent(const Meeting& meeting, WallTime now);

// The strict priority: recording, toast, timer, meeting, transfer, music, else none. Prayer
// activities are never chosen here.
std::optional<ClosedActivity> computeActivity(const ActivityInputs& inputs);

} // namespace navro
