#pragma once

#include "app/SoundPlayer.h"

#include <QThread>
#include <memory>

struct ca_context;

namespace navro {

// The freedesktop sound theme through libcanberra, on the desktop's sound server. Connecting to
// the server and handing it a sound can take a while, so all of it happens on a thread of its
// own, started with the first sound.
class CanberraSoundPlayer final : public SoundPlayer {
public:
    CanberraSoundPlayer();
    ~CanberraSoundPlayer() override;

    void playEvent(const std::string& eventId, const std::string& description) override;

private:
    // Only on thread_.
    void play(const std::string& eventId, const std::string& description);
    void noteFailure(const std::string& eventId, int error);

    QThread thread_;
    std::unique_ptr<QObject> worker_;
    ca_context* context_ = nullptr;
    int lastError_ = 0;
};

} // namespace navro
