#include "data/TimerPhase.h"

#include <algorithm>
#include <cmath>

namespace navro {
namespace {

constexpr double extraSeconds = 60;

double secondsBetween(WallTime from, WallTime to)
{
    return std::chrono::duration<double>(to - from).count();
}

} // namespace

bool isValidTimerMinutes(double minutes)
{
    return std::isfinite(minutes) && minutes > 0 && minutes <= longestTimerMinutes;
}

TimerPhase TimerPhase::startingAt(WallTime now, double minutes)
{
    const double total = minutes * 60;
    return running(now + seconds(total), total);
}

TimerState TimerPhase::state() const
{
    if (std::holds_alternative<Running>(phase_))
        return TimerState::running;
    if (std::holds_alternative<Paused>(phase_))
        return TimerState::paused;
    if (std::holds_alternative<Finished>(phase_))
        return TimerState::finished;
    return TimerState::idle;
}

double TimerPhase::total() const
{
    if (const auto* running = std::get_if<Running>(&phase_))
        return running->total;
    if (const auto* paused = std::get_if<Paused>(&phase_))
        return paused->total;
    return 0;
}

double TimerPhase::remaining(WallTime at) const
{
    if (const auto* running = std::get_if<Running>(&phase_))
        return std::max(0.0, secondsBetween(at, running->end));
    if (const auto* paused = std::get_if<Paused>(&phase_))
        return std::max(0.0, paused->remaining);
    return 0;
}

double TimerPhase::progress(WallTime at) const
{
    if (std::holds_alternative<Finished>(phase_))
        return 1;
    const double length = total();
    if (!(length > 0))
        return 0;
    return std::clamp((length - remaining(at)) / length, 0.0, 1.0);
}

bool TimerPhase::isDue(WallTime at) const
{
    const auto* running = std::get_if<Running>(&phase_);
    return running && at >= running->end;
}

TimerPhase TimerPhase::pausedAt(WallTime at) const
{
    if (const auto* running = std::get_if<Running>(&phase_))
        return paused(remaining(at), running->total);
    return *this;
}

TimerPhase TimerPhase::resumedAt(WallTime at) const
{
    if (const auto* paused = std::get_if<Paused>(&phase_))
        return running(at + seconds(paused->remaining), paused->total);
    return *this;
}

TimerPhase TimerPhase::withExtraMinute() const
{
    if (const auto* running = std::get_if<Running>(&phase_))
        return TimerPhase::running(running->end + seconds(extraSeconds),
                                   running->total + extraSeconds);
    if (const auto* paused = std::get_if<Paused>(&phase_))
        return TimerPhase::paused(paused->remaining + extraSeconds, paused->total + extraSeconds);
    return *this;
}

} // namespace navro
