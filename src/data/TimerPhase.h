#pragma once

#include "app/Clock.h"
#include "notch/ActivityRule.h"

#include <variant>

namespace navro {

// The longest session a timer takes, in minutes: a day.
inline constexpr double longestTimerMinutes = 24 * 60;

// More than nothing, at most a day, and a number.
bool isValidTimerMinutes(double minutes);

// Where a countdown stands: running towards `end`, paused with time left, idle (no session) or
// just finished. Durations are seconds. Counting towards a wall-clock end rather than summing
// elapsed ticks keeps the countdown right across a suspended machine and whatever the tick rate.
class TimerPhase {
public:
    static TimerPhase idle() { return TimerPhase(Idle{}); }
    static TimerPhase finished() { return TimerPhase(Finished{}); }
    static TimerPhase running(WallTime end, double total)
    {
        return TimerPhase(Running{end, total});
    }
    static TimerPhase paused(double remaining, double total)
    {
        return TimerPhase(Paused{remaining, total});
    }
    // A new session of `minutes` from `now`.
    static TimerPhase startingAt(WallTime now, double minutes);

    TimerState state() const;
    // The session's length; 0 without a session.
    double total() const;
    // Seconds left at `at`: never below 0; 0 without a session.
    double remaining(WallTime at) const;
    // The share of the session already behind at `at`, 0…1: 1 once finished, 0 when idle.
    double progress(WallTime at) const;
    // Running and the end reached.
    bool isDue(WallTime at) const;

    // Running: paused with what is left at `at`. Otherwise unchanged.
    TimerPhase pausedAt(WallTime at) const;
    // Paused: a new running period from what was left. Otherwise unchanged.
    TimerPhase resumedAt(WallTime at) const;
    // Running or paused: a minute more to go and a minute longer in all. Otherwise unchanged.
    TimerPhase withExtraMinute() const;

    bool operator==(const TimerPhase&) const = default;

private:
    struct Running {
        WallTime end;
        double total;
        bool operator==(const Running&) const = default;
    };
    struct Paused {
        double remaining;
        double total;
        bool operator==(const Paused&) const = default;
    };
    struct Idle {
        bool operator==(const Idle&) const = default;
    };
    struct Finished {
        bool operator==(const Finished&) const = default;
    };

    template <typename T> explicit TimerPhase(T phase) : phase_(phase) {}

    std::variant<Running, Paused, Idle, Finished> phase_;
};

} // namespace navro
