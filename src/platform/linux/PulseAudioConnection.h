#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct pa_context;
struct pa_threaded_mainloop;

namespace navro {

// The one connection to the sound server that the bars' capture and the system volume share:
// PulseAudio's threaded main loop, its context, and what the server's subscription says about
// the outputs, kept current on the main thread.
//
// Calls into libpulse are made with the loop locked (Lock); its callbacks run on the loop's
// thread with the lock held and hand their results to the main thread through post().
class PulseAudioConnection final : public QObject {
    Q_OBJECT

public:
    enum class State {
        connecting,
        ready,
        unavailable, // no sound server answered
        failed       // there was one, and the connection to it failed or ended
    };

    struct Sink {
        std::uint32_t index = 0;
        std::string name;
        std::string description;
        double volume = 0; // the average of its channels, 1 at 100 %
        bool muted = false;
        std::uint8_t channels = 0;
        bool operator==(const Sink&) const = default;
    };
    struct Outputs {
        std::vector<Sink> sinks; // in the server's order
        std::string defaultSink;
        bool operator==(const Outputs&) const = default;
    };

    class Lock {
    public:
        explicit Lock(PulseAudioConnection& connection);
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        pa_threaded_mainloop* loop_;
    };

    PulseAudioConnection();
    ~PulseAudioConnection() override;

    State state() const { return state_; }
    // libpulse's error code of the failed connection.
    int error() const { return error_; }
    const Outputs& outputs() const { return outputs_; }

    // With the loop locked, and only while state() is ready.
    pa_context* context() const { return context_; }
    // From the loop's thread: runs `work` on the main thread, unless the connection is gone.
    void post(std::function<void()> work);

signals:
    void stateChanged();
    void outputsChanged();
    // Another sink became the default (not sent for the first one learnt).
    void defaultSinkChanged();

private:
    static void onContextState(pa_context* context, void* self);
    void refreshOutputs();
    void publishOutputs(Outputs outputs);

    pa_threaded_mainloop* loop_ = nullptr;
    pa_context* context_ = nullptr;
    State state_ = State::connecting;
    int error_ = 0;
    Outputs outputs_;
    // The loop thread's side of a refresh: the one under way, and whether another is due.
    Outputs collecting_;
    bool refreshing_ = false;
    bool refreshAgain_ = false;
};

} // namespace navro
