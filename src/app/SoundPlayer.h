#pragma once

#include <memory>
#include <string>

namespace navro {

// Plays short sounds of the desktop's sound theme on its sound server, without waiting for them.
// With no sound server (or no such sound) nothing is heard and one log line says why; the
// caller is never told, since a missing sound must not change what it does.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;
    // `eventId` names a sound of the freedesktop sound theme ("complete", "bell", …);
    // `description` says what happened, for the sound server's list of streams.
    virtual void playEvent(const std::string& eventId, const std::string& description) = 0;
};

// Defined by the platform library (libcanberra on Linux).
std::unique_ptr<SoundPlayer> makeSoundPlayer();

} // namespace navro
