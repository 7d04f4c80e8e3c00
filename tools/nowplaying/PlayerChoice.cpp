#include "nowplaying/PlayerChoice.h"

#include <tuple>

namespace navro {

void PlayerChoice::appeared(const std::string& player)
{
    auto [entry, added] = players_.try_emplace(player);
    if (added)
        entry->second.appeared = ++events_;
}

void PlayerChoice::vanished(const std::string& player)
{
    players_.erase(player);
}

void PlayerChoice::setPlaying(const std::string& player, bool playing)
{
    appeared(player);
    Entry& entry = players_[player];
    if (playing == entry.playing)
        return;
    entry.playing = playing;
    // Starting and stopping both count as playing "last": a player paused a moment ago played
    // more recently than one paused an hour ago.
    const std::uint64_t now = ++events_;
    entry.lastPlayed = now;
    if (playing)
        entry.startedPlaying = now;
}

std::optional<std::string> PlayerChoice::chosen() const
{
    const std::string* best = nullptr;
    std::tuple<bool, std::uint64_t, std::uint64_t> bestRank{};
    for (const auto& [name, entry] : players_) {
        // Playing beats not playing; then the later start (playing) or the later play (not
        // playing); then the later appearance.
        const auto rank = std::make_tuple(
            entry.playing, entry.playing ? entry.startedPlaying : entry.lastPlayed, entry.appeared);
        if (!best || rank > bestRank) {
            best = &name;
            bestRank = rank;
        }
    }
    if (!best)
        return std::nullopt;
    return *best;
}

} // namespace navro
