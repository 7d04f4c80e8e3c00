#pragma once

#include "media/BandAnalyzer.h"
#include "media/SystemAudio.h"
#include "media/SystemVolume.h"

#include <optional>
#include <string>
#include <vector>

namespace navro {

// Taps that the test can see and fail, and default-output changes on demand.
class FakeSystemAudio final : public SystemAudio {
public:
    struct FakeTap final : Tap {
        FakeTap(FakeSystemAudio& audio, TapFailed failed)
            : audio(audio), failed(std::move(failed)), serial(audio.started)
        {
            ++audio.live;
        }
        ~FakeTap() override { --audio.live; }
        FakeSystemAudio& audio;
        TapFailed failed;
        int serial; // 1 for the first tap made
    };

    bool canListen() const override { return listenable; }
    std::unique_ptr<Tap> startTap(BandAnalyzer& analyzer, TapFailed failed,
                                  Analysed analysed) override
    {
        ++started;
        lastAnalyzer = &analyzer;
        lastAnalysed = std::move(analysed);
        if (failAtOnce) {
            failed(*failAtOnce);
            return nullptr;
        }
        auto tap = std::make_unique<FakeTap>(*this, std::move(failed));
        latest = tap.get();
        return tap;
    }
    void setDefaultOutputChanged(std::function<void()> changed) override
    {
        defaultOutputChanged = std::move(changed);
    }

    bool listenable = true;
    std::optional<TapError> failAtOnce;
    int started = 0;
    int live = 0;
    FakeTap* latest = nullptr;
    BandAnalyzer* lastAnalyzer = nullptr;
    Analysed lastAnalysed; // what the capture's thread calls after each batch
    std::function<void()> defaultOutputChanged;
};

// Outputs held in memory; every request is kept until the test answers it.
class FakeAudioOutputs final : public AudioOutputControl {
public:
    struct Request {
        std::string what; // "volume", "mute" or "default"
        std::string id;
        double value = 0;
        Done done;
    };

    void setOutputsChanged(std::function<void(const AudioOutputs&)> changed) override
    {
        changed_ = std::move(changed);
        if (changed_)
            changed_(state);
    }
    void setVolume(const std::string& id, double volume, Done done) override
    {
        requests.push_back({"volume", id, volume, std::move(done)});
    }
    void setMuted(const std::string& id, bool muted, Done done) override
    {
        requests.push_back({"mute", id, muted ? 1.0 : 0.0, std::move(done)});
    }
    void makeDefault(const std::string& id, Done done) override
    {
        requests.push_back({"default", id, 0, std::move(done)});
    }

    // The system's side: the state changes and everyone hears of it.
    void publish()
    {
        if (changed_)
            changed_(state);
    }
    // Answers the oldest request; on success the system applies it first, as a server would.
    void answer(bool succeeded)
    {
        Request request = std::move(requests.front());
        requests.erase(requests.begin());
        if (succeeded) {
            for (auto& output : state.outputs) {
                if (output.id != request.id)
                    continue;
                if (request.what == "volume")
                    output.volume = request.value;
                else if (request.what == "mute")
                    output.muted = request.value != 0;
            }
            if (request.what == "default")
                state.defaultId = request.id;
            publish();
        }
        request.done(succeeded);
    }

    AudioOutputs state;
    std::vector<Request> requests;

private:
    std::function<void(const AudioOutputs&)> changed_;
};

} // namespace navro
