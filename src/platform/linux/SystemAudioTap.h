#pragma once

#include "media/SystemAudio.h"

#include <QObject>

struct pa_operation;
struct pa_stream;

namespace navro {

class PulseAudioConnection;

// Listens to everything the default sink plays: a record stream "Navro bars" on its monitor, in
// 32-bit float at the sink's own rate and channel count, fed to the analyser on the loop's
// thread. Fragments of 50 ms wake Navro 20 times a second: the bars move smoothly at that rate,
// and every wake-up costs more than the analysis it brings.
class SystemAudioTap final : public QObject, public SystemAudio::Tap {
    Q_OBJECT

public:
    SystemAudioTap(PulseAudioConnection& connection, BandAnalyzer& analyzer,
                   SystemAudio::TapFailed failed, SystemAudio::Analysed analysed);
    ~SystemAudioTap() override;

    static constexpr int wakesPerSecond = 20;

private:
    void start();
    // On the loop's thread.
    void onSinkFound(const char* monitor, unsigned rate, unsigned channels);
    void fail(const char* step, int code);
    void cancelPending();
    static void onReadable(pa_stream* stream, std::size_t bytes, void* self);
    static void onStreamState(pa_stream* stream, void* self);

    PulseAudioConnection& connection_;
    BandAnalyzer& analyzer_;
    SystemAudio::TapFailed failed_;
    SystemAudio::Analysed analysed_;
    // Loop thread, under the lock.
    pa_operation* pending_ = nullptr;
    pa_stream* stream_ = nullptr;
    int channels_ = 0;
    bool failedOnce_ = false;
};

// The bars' way into the system's sound, over the shared connection.
class PulseSystemAudio final : public QObject, public SystemAudio {
    Q_OBJECT

public:
    explicit PulseSystemAudio(PulseAudioConnection& connection);

    bool canListen() const override;
    std::unique_ptr<Tap> startTap(BandAnalyzer& analyzer, TapFailed failed,
                                  Analysed analysed) override;
    void setDefaultOutputChanged(std::function<void()> changed) override;

private:
    PulseAudioConnection& connection_;
    std::function<void()> defaultOutputChanged_;
};

} // namespace navro
