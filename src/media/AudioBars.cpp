#include "media/AudioBars.h"

#include "app/AppSettings.h"
#include "app/Log.h"

namespace navro {

AudioBars::AudioBars(Clock& clock, const AppSettings& settings, SystemAudio& audio, QObject* parent)
    : QObject(parent), settings_(settings), audio_(audio), stopTask_(clock.makeSlot())
{
    connect(&settings_, &AppSettings::barsFollowSoundChanged, this, &AudioBars::update);
    audio_.setDefaultOutputChanged([this] { onDefaultOutputChanged(); });
}

AudioBars::~AudioBars()
{
    audio_.setDefaultOutputChanged({});
    tap_.reset();
}

void AudioBars::setPlaying(bool playing)
{
    if (playing == playing_)
        return;
    playing_ = playing;
    update();
}

void AudioBars::shutDown()
{
    shutDown_ = true;
    stopTask_->cancel();
    stopTap();
}

void AudioBars::update()
{
    wantsTap_ = playing_ && settings_.barsFollowSound() && !shutDown_;
    if (wantsTap_) {
        stopTask_->cancel();
        if (!tap_)
            startTap();
    } else if (tap_) {
        stopTask_->schedule(stopDelay, [this] { stopTap(); });
    }
}

void AudioBars::startTap()
{
    if (!audio_.canListen())
        return;
    analyzer_.reset();
    // A failure reported while starting arrives before the tap is even kept: hence the flag.
    startFailed_ = false;
    auto failed = [this](const SystemAudio::TapError& error) {
        logLine(LogChannel::bars, error.description());
        startFailed_ = true;
        // The bars go back to their own motion; the next change of what is wanted tries again.
        stopTap();
    };
    // On the capture's thread: the views hear of the levels only when they moved visibly.
    auto analysed = [this] {
        if (analyzer_.takeChange(visibleStep))
            QMetaObject::invokeMethod(this, &AudioBars::levelsChanged, Qt::QueuedConnection);
    };
    auto tap = audio_.startTap(analyzer_, failed, analysed);
    if (startFailed_ || !tap)
        return;
    tap_ = std::move(tap);
    emit listeningChanged();
}

void AudioBars::stopTap()
{
    if (!tap_)
        return;
    tap_.reset();
    emit listeningChanged();
}

void AudioBars::onDefaultOutputChanged()
{
    if (!tap_)
        return;
    stopTap();
    if (wantsTap_)
        startTap();
}

std::vector<float> AudioBars::liveLevels(int count) const
{
    if (!tap_ || !analyzer_.heardSound())
        return {};
    return analyzer_.levels(count);
}

} // namespace navro
