#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace navro {

// Which of the media players on the bus is the one to report: the one playing; of several
// playing, the one that started last; when none plays, the one that played last (and among
// players that never played, the one that appeared last); nothing when no player is left.
//
// Order is kept by a counter of events rather than by the clock, so that two changes within one
// clock tick still have an order.
class PlayerChoice {
public:
    void appeared(const std::string& player);
    void vanished(const std::string& player);
    // Unknown players are added, as if they had just appeared.
    void setPlaying(const std::string& player, bool playing);

    std::optional<std::string> chosen() const;
    bool isEmpty() const { return players_.empty(); }

private:
    struct Entry {
        bool playing = false;
        std::uint64_t startedPlaying = 0; // when it last went from not playing to playing
        std::uint64_t lastPlayed = 0;     // the last moment it was known to play
        std::uint64_t appeared = 0;
    };

    std::map<std::string, Entry> players_;
    std::uint64_t events_ = 0;
};

} // namespace navro
