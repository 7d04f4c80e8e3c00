#include "media/NowPlayingInfo.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

const WallTime now(std::chrono::hours(24 * 365 * 56));

NowPlayingInfo track(double elapsed, double rate, double duration, std::optional<double> secondsAgo)
{
    NowPlayingInfo info;
    info.title = "Song";
    info.elapsed = elapsed;
    info.rate = rate;
    info.duration = duration;
    if (secondsAgo)
        info.timestamp = now - seconds(*secondsAgo);
    return info;
}

TEST(ElapsedAt, ExtrapolatesClampsAndStaysPutWhenPaused)
{
    const struct {
        const char* what;
        std::optional<NowPlayingInfo> info;
        double expected;
    } cases[] = {
        {"no info", std::nullopt, 0},
        {"playing past the end stops at the end", track(10, 1, 12, 5), 12},
        {"unknown duration runs on", track(10, 1, 0, 5), 15},
        {"paused stays at its position", track(10, 0, 12, 5), 10},
        {"a negative position gives 0", track(-3, 0, 12, 5), 0},
        {"double speed", track(10, 2, 100, 5), 20},
        {"no timestamp: nothing to extrapolate from", track(10, 1, 100, std::nullopt), 10},
        {"a timestamp in the future pulls back", track(10, 1, 100, -4), 6},
        {"further in the future than the position: 0", track(1, 1, 100, -4), 0},
        {"exactly at the end", track(7, 1, 12, 5), 12},
        {"milliseconds count", track(1, 1, 0, 0.25), 1.25},
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(elapsedAt(c.info, now), c.expected) << c.what;
}

} // namespace
} // namespace navro
