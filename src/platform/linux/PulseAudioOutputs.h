#pragma once

#include "media/SystemVolume.h"

#include <QObject>

struct pa_operation;

namespace navro {

class PulseAudioConnection;

// The sound server's sinks as the volume's outputs: a sink's description is its name, its
// channels' average its volume. Changes go through the shared connection.
class PulseAudioOutputs final : public QObject, public AudioOutputControl {
    Q_OBJECT

public:
    explicit PulseAudioOutputs(PulseAudioConnection& connection);

    void setOutputsChanged(std::function<void(const AudioOutputs&)> changed) override;
    void setVolume(const std::string& id, double volume, Done done) override;
    void setMuted(const std::string& id, bool muted, Done done) override;
    void makeDefault(const std::string& id, Done done) override;

private:
    struct Request;
    AudioOutputs current() const;
    // Runs `ask` with the loop locked; its operation's answer reaches `done` on this thread.
    void request(Done done, const std::function<pa_operation*(Request*)>& ask);

    PulseAudioConnection& connection_;
    std::function<void(const AudioOutputs&)> changed_;
};

} // namespace navro
