#include "platform/linux/SystemAudioTap.h"

#include "media/BandAnalyzer.h"
#include "platform/linux/PulseAudioConnection.h"

#include <pulse/pulseaudio.h>

namespace navro {

SystemAudioTap::SystemAudioTap(PulseAudioConnection& connection, BandAnalyzer& analyzer,
                               SystemAudio::TapFailed failed, SystemAudio::Analysed analysed)
    : connection_(connection), analyzer_(analyzer), failed_(std::move(failed)),
      analysed_(std::move(analysed))
{
    switch (connection_.state()) {
    case PulseAudioConnection::State::ready:
        start();
        break;
    case PulseAudioConnection::State::connecting:
        // Music that plays at start-up can be quicker than the server's answer.
        connect(&connection_, &PulseAudioConnection::stateChanged, this, [this] {
            if (connection_.state() == PulseAudioConnection::State::connecting)
                return;
            disconnect(&connection_, nullptr, this, nullptr);
            if (connection_.state() == PulseAudioConnection::State::ready)
                start();
            else
                failed_({"Connect", connection_.error()});
        });
        break;
    default:
        failed_({"Connect", connection_.error()});
        break;
    }
}

SystemAudioTap::~SystemAudioTap()
{
    // Under the lock no callback runs: once it is released, the analyser is no longer fed.
    PulseAudioConnection::Lock lock(connection_);
    cancelPending();
    if (stream_) {
        pa_stream_set_read_callback(stream_, nullptr, nullptr);
        pa_stream_set_state_callback(stream_, nullptr, nullptr);
        pa_stream_disconnect(stream_);
        pa_stream_unref(stream_);
        stream_ = nullptr;
    }
}

void SystemAudioTap::cancelPending()
{
    if (!pending_)
        return;
    pa_operation_cancel(pending_);
    pa_operation_unref(pending_);
    pending_ = nullptr;
}

void SystemAudioTap::start()
{
    PulseAudioConnection::Lock lock(connection_);
    // The default sink first, then its format and monitor.
    pending_ = pa_context_get_server_info(
        connection_.context(),
        [](pa_context* context, const pa_server_info* info, void* data) {
            auto* self = static_cast<SystemAudioTap*>(data);
            self->cancelPending();
            if (!info || !info->default_sink_name) {
                self->fail("Read format", pa_context_errno(context));
                return;
            }
            self->pending_ = pa_context_get_sink_info_by_name(
                context, info->default_sink_name,
                [](pa_context* context, const pa_sink_info* sink, int eol, void* data) {
                    auto* self = static_cast<SystemAudioTap*>(data);
                    if (eol > 0)
                        return;
                    self->cancelPending();
                    if (eol < 0 || !sink || !sink->monitor_source_name)
                        self->fail("Read format", pa_context_errno(context));
                    else
                        self->onSinkFound(sink->monitor_source_name, sink->sample_spec.rate,
                                          sink->sample_spec.channels);
                },
                self);
            if (!self->pending_)
                self->fail("Read format", pa_context_errno(context));
        },
        this);
    if (!pending_)
        fail("Read format", pa_context_errno(connection_.context()));
}

void SystemAudioTap::onSinkFound(const char* monitor, unsigned rate, unsigned channels)
{
    pa_sample_spec sampleFormat{PA_SAMPLE_FLOAT32NE, rate, std::uint8_t(channels)};
    if (!pa_sample_spec_valid(&sampleFormat)) {
        fail("Unsupported format", PA_ERR_NOTSUPPORTED);
        return;
    }
    analyzer_.configure(rate);
    channels_ = int(channels);
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_NAME, "Navro bars");
    stream_ = pa_stream_new_with_proplist(connection_.context(), "Navro bars", &sampleFormat,
                                          nullptr, properties);
    pa_proplist_free(properties);
    if (!stream_) {
        fail("Create tap", pa_context_errno(connection_.context()));
        return;
    }
    pa_stream_set_read_callback(stream_, &SystemAudioTap::onReadable, this);
    pa_stream_set_state_callback(stream_, &SystemAudioTap::onStreamState, this);
    pa_buffer_attr buffer{};
    buffer.maxlength = std::uint32_t(-1);
    buffer.fragsize =
        std::uint32_t(pa_usec_to_bytes(PA_USEC_PER_SEC / wakesPerSecond, &sampleFormat));
    // Stays on this monitor: when the default sink changes, the bars build a new tap there.
    const auto flags = pa_stream_flags_t(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE |
                                         PA_STREAM_DONT_INHIBIT_AUTO_SUSPEND);
    if (pa_stream_connect_record(stream_, monitor, &buffer, flags) < 0)
        fail("Start", pa_context_errno(connection_.context()));
}

void SystemAudioTap::onReadable(pa_stream* stream, std::size_t, void* data)
{
    auto* self = static_cast<SystemAudioTap*>(data);
    const std::size_t frameBytes = sizeof(float) * std::size_t(self->channels_);
    const void* samples = nullptr;
    std::size_t bytes = 0;
    // Every call into the library costs a system call here (its fork check), so the loop asks
    // only for the next piece: an empty one means the buffer is drained.
    while (pa_stream_peek(stream, &samples, &bytes) == 0 && bytes > 0) {
        // A hole in the stream (no data) is skipped like the data is.
        if (samples)
            self->analyzer_.process(static_cast<const float*>(samples), bytes / frameBytes,
                                    self->channels_);
        pa_stream_drop(stream);
    }
    if (self->analysed_)
        self->analysed_();
}

void SystemAudioTap::onStreamState(pa_stream* stream, void* data)
{
    auto* self = static_cast<SystemAudioTap*>(data);
    const pa_stream_state_t state = pa_stream_get_state(stream);
    if (state == PA_STREAM_FAILED || state == PA_STREAM_TERMINATED)
        self->fail("Start", pa_context_errno(pa_stream_get_context(stream)));
}

void SystemAudioTap::fail(const char* step, int code)
{
    if (failedOnce_)
        return;
    failedOnce_ = true;
    // Dropped with the tap if it is destroyed before the main thread gets to it.
    QMetaObject::invokeMethod(
        this, [this, failure = SystemAudio::TapError{step, code}] { failed_(failure); },
        Qt::QueuedConnection);
}

PulseSystemAudio::PulseSystemAudio(PulseAudioConnection& connection) : connection_(connection)
{
    connect(&connection_, &PulseAudioConnection::defaultSinkChanged, this, [this] {
        if (defaultOutputChanged_)
            defaultOutputChanged_();
    });
}

bool PulseSystemAudio::canListen() const
{
    return connection_.state() != PulseAudioConnection::State::unavailable;
}

std::unique_ptr<SystemAudio::Tap> PulseSystemAudio::startTap(BandAnalyzer& analyzer,
                                                             TapFailed failed, Analysed analysed)
{
    return std::make_unique<SystemAudioTap>(connection_, analyzer, std::move(failed),
                                            std::move(analysed));
}

void PulseSystemAudio::setDefaultOutputChanged(std::function<void()> changed)
{
    defaultOutputChanged_ = std::move(changed);
}

} // namespace navro
