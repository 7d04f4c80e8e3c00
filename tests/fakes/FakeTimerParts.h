#pragma once

#include "app/Shell.h"
#include "app/SoundPlayer.h"
#include "data/SleepPreventer.h"

#include <QStringList>
#include <algorithm>
#include <string>
#include <vector>

namespace navro {

// Counts holds as the caller asks for them, so that a second hold without a release in between
// shows up (the real preventers would hide it).
class FakeSleepPreventer final : public SleepPreventer {
public:
    void keepAwake() override
    {
        ++holds;
        mostHolds = std::max(mostHolds, holds);
    }
    void allowSleep() override { --holds; }

    int holds = 0;
    int mostHolds = 0;
};

class FakeSoundPlayer final : public SoundPlayer {
public:
    void playEvent(const std::string& eventId, const std::string&) override
    {
        played.push_back(eventId);
    }
    std::vector<std::string> played;
};

// Records the programs it is asked to run; answers only when told to.
class RecordingShell final : public Shell {
public:
    void run(const QString& path, const QStringList& arguments, QObject*,
             BytesCallback callback) override
    {
        runs << (arguments.isEmpty() ? path : path + " " + arguments.join(' '));
        callbacks.push_back(std::move(callback));
    }
    void answerAll(std::optional<QByteArray> output)
    {
        auto pending = std::move(callbacks);
        callbacks.clear();
        for (auto& callback : pending)
            callback(output);
    }

    QStringList runs;
    std::vector<BytesCallback> callbacks;
};

} // namespace navro
