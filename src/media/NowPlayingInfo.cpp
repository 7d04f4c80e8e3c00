#include "media/NowPlayingInfo.h"

namespace navro {

double elapsedAt(const std::optional<NowPlayingInfo>& info, WallTime t)
{
    if (!info)
        return 0;
    double elapsed = info->elapsed;
    if (info->rate > 0 && info->timestamp)
        elapsed += info->rate * std::chrono::duration<double>(t - *info->timestamp).count();
    if (info->duration > 0 && elapsed > info->duration)
        elapsed = info->duration;
    // Written so that a NaN from a broken source also gives 0.
    return elapsed > 0 ? elapsed : 0;
}

} // namespace navro
