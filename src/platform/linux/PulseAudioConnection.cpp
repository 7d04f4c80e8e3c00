#include "platform/linux/PulseAudioConnection.h"

#include "app/Log.h"

#include <QMetaObject>
#include <pulse/pulseaudio.h>

namespace navro {

PulseAudioConnection::Lock::Lock(PulseAudioConnection& connection) : loop_(connection.loop_)
{
    pa_threaded_mainloop_lock(loop_);
}

PulseAudioConnection::Lock::~Lock()
{
    pa_threaded_mainloop_unlock(loop_);
}

PulseAudioConnection::PulseAudioConnection()
{
    loop_ = pa_threaded_mainloop_new();
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Navro");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ID, "io.navro.Navro");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "navro");
    context_ =
        pa_context_new_with_proplist(pa_threaded_mainloop_get_api(loop_), "Navro", properties);
    pa_proplist_free(properties);
    pa_context_set_state_callback(context_, &PulseAudioConnection::onContextState, this);
    // Never start a server of our own: without one the bars move by themselves and the volume
    // has nothing to show.
    if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        error_ = pa_context_errno(context_);
        state_ = State::unavailable;
        logLine("no sound server (" + std::string(pa_strerror(error_)) +
                "): the bars move by themselves and the volume is not shown");
    }
    pa_threaded_mainloop_start(loop_);
}

PulseAudioConnection::~PulseAudioConnection()
{
    {
        Lock lock(*this);
        pa_context_set_state_callback(context_, nullptr, nullptr);
        pa_context_set_subscribe_callback(context_, nullptr, nullptr);
        pa_context_disconnect(context_);
        pa_context_unref(context_);
        context_ = nullptr;
    }
    pa_threaded_mainloop_stop(loop_);
    pa_threaded_mainloop_free(loop_);
}

void PulseAudioConnection::post(std::function<void()> work)
{
    // Queued events of an object that is destroyed are dropped with it.
    QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
}

void PulseAudioConnection::onContextState(pa_context* context, void* data)
{
    auto* self = static_cast<PulseAudioConnection*>(data);
    switch (pa_context_get_state(context)) {
    case PA_CONTEXT_READY: {
        pa_context_set_subscribe_callback(
            context,
            [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* data) {
                static_cast<PulseAudioConnection*>(data)->refreshOutputs();
            },
            self);
        pa_operation* subscribing = pa_context_subscribe(
            context,
            pa_subscription_mask_t(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER),
            nullptr, nullptr);
        if (subscribing)
            pa_operation_unref(subscribing);
        self->refreshOutputs();
        self->post([self] {
            self->state_ = State::ready;
            emit self->stateChanged();
        });
        break;
    }
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED: {
        const int error = pa_context_errno(context);
        self->post([self, error] {
            const bool neverReady = self->state_ == State::connecting;
            self->error_ = error;
            self->state_ = neverReady && error == PA_ERR_CONNECTIONREFUSED ? State::unavailable
                                                                           : State::failed;
            if (self->state_ == State::unavailable)
                logLine("no sound server: the bars move by themselves and the volume is not shown");
            else
                logLine("the connection to the sound server ended (" +
                        std::string(pa_strerror(error)) + ")");
            self->publishOutputs({});
            emit self->stateChanged();
        });
        break;
    }
    default:
        break;
    }
}

// On the loop's thread. Events come in bursts (a volume drag is dozens of them): one refresh runs
// at a time, and one more follows it when anything happened meanwhile.
void PulseAudioConnection::refreshOutputs()
{
    if (refreshing_) {
        refreshAgain_ = true;
        return;
    }
    refreshing_ = true;
    refreshAgain_ = false;
    collecting_ = {};
    // The server answers in the order asked: its default sink, then every sink.
    pa_operation* server = pa_context_get_server_info(
        context_,
        [](pa_context*, const pa_server_info* info, void* data) {
            auto* self = static_cast<PulseAudioConnection*>(data);
            if (info && info->default_sink_name)
                self->collecting_.defaultSink = info->default_sink_name;
        },
        this);
    if (server)
        pa_operation_unref(server);
    pa_operation* sinks = pa_context_get_sink_info_list(
        context_,
        [](pa_context*, const pa_sink_info* info, int eol, void* data) {
            auto* self = static_cast<PulseAudioConnection*>(data);
            if (eol == 0 && info) {
                Sink sink;
                sink.index = info->index;
                sink.name = info->name ? info->name : "";
                sink.description = info->description ? info->description : sink.name;
                sink.volume = double(pa_cvolume_avg(&info->volume)) / PA_VOLUME_NORM;
                sink.muted = info->mute != 0;
                sink.channels = info->volume.channels;
                self->collecting_.sinks.push_back(std::move(sink));
                return;
            }
            // The end of the list, or an error (eol < 0): publish what there is.
            self->refreshing_ = false;
            self->post([self, outputs = std::move(self->collecting_)]() mutable {
                self->publishOutputs(std::move(outputs));
            });
            if (self->refreshAgain_)
                self->refreshOutputs();
        },
        this);
    if (sinks)
        pa_operation_unref(sinks);
    else
        refreshing_ = false;
}

void PulseAudioConnection::publishOutputs(Outputs outputs)
{
    if (outputs == outputs_)
        return;
    const bool defaultMoved = !outputs_.defaultSink.empty() && !outputs.defaultSink.empty() &&
                              outputs.defaultSink != outputs_.defaultSink;
    outputs_ = std::move(outputs);
    emit outputsChanged();
    if (defaultMoved)
        emit defaultSinkChanged();
}

} // namespace navro
