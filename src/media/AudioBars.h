#pragma once

#include "app/Clock.h"
#include "media/BandAnalyzer.h"
#include "media/SystemAudio.h"

#include <QObject>
#include <memory>

namespace navro {

class AppSettings;

// Decides when the bars listen to the system's sound: while music plays and the bars are to
// follow it. Listening starts at once and ends 5 s after it is no longer wanted, so a short
// pause between tracks keeps the same tap. Nothing is captured while nothing plays.
class AudioBars : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isListening READ isListening NOTIFY listeningChanged)

public:
    AudioBars(Clock& clock, const AppSettings& settings, SystemAudio& audio,
              QObject* parent = nullptr);
    ~AudioBars() override;

    // Whether music plays now (the now-playing track's rate above 0).
    void setPlaying(bool playing);
    // Stops listening for good, at the end of the process.
    void shutDown();

    bool isListening() const { return tap_ != nullptr; }
    // The live levels of `count` bars, or nothing while no tap runs or it has not yet heard any
    // sound (the views then draw their own motion).
    std::vector<float> liveLevels(int count) const;

    BandAnalyzer& analyzer() { return analyzer_; }

    static constexpr Duration stopDelay = std::chrono::seconds(5);
    // A quarter of a pixel of the tallest bars drawn (18 px): smaller moves are not announced.
    static constexpr float visibleStep = 1.0f / 64;

signals:
    void listeningChanged();
    // The live levels moved by a step the bars can show (a steady sound is quiet).
    void levelsChanged();

private:
    void update();
    void startTap();
    void stopTap();
    void onDefaultOutputChanged();

    const AppSettings& settings_;
    SystemAudio& audio_;
    BandAnalyzer analyzer_;
    std::unique_ptr<SystemAudio::Tap> tap_;
    std::unique_ptr<TaskSlot> stopTask_;
    bool playing_ = false;
    bool wantsTap_ = false;
    bool shutDown_ = false;
    bool startFailed_ = false;
};

} // namespace navro
