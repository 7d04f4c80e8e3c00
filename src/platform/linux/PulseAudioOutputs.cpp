#include "platform/linux/PulseAudioOutputs.h"

#include "platform/linux/PulseAudioConnection.h"

#include <QPointer>
#include <cmath>
#include <pulse/pulseaudio.h>

namespace navro {

struct PulseAudioOutputs::Request {
    QPointer<PulseAudioOutputs> owner;
    Done done;
    std::string sink; // for makeDefault: where the playing streams go

    // On the loop's thread: hands the answer to the main thread and ends the request.
    static void answer(pa_context*, int success, void* data)
    {
        auto* request = static_cast<Request*>(data);
        if (request->owner)
            request->owner->connection_.post(
                [done = std::move(request->done), success] { done(success != 0); });
        delete request;
    }
};

PulseAudioOutputs::PulseAudioOutputs(PulseAudioConnection& connection) : connection_(connection)
{
    connect(&connection_, &PulseAudioConnection::outputsChanged, this, [this] {
        if (changed_)
            changed_(current());
    });
}

AudioOutputs PulseAudioOutputs::current() const
{
    AudioOutputs outputs;
    outputs.defaultId = connection_.outputs().defaultSink;
    for (const auto& sink : connection_.outputs().sinks)
        outputs.outputs.push_back({sink.name, sink.description, sink.volume, sink.muted, true});
    return outputs;
}

void PulseAudioOutputs::setOutputsChanged(std::function<void(const AudioOutputs&)> changed)
{
    changed_ = std::move(changed);
    if (changed_)
        changed_(current());
}

void PulseAudioOutputs::request(Done done, const std::function<pa_operation*(Request*)>& ask)
{
    if (connection_.state() != PulseAudioConnection::State::ready) {
        done(false);
        return;
    }
    auto* request = new Request{this, std::move(done), {}};
    PulseAudioConnection::Lock lock(connection_);
    pa_operation* operation = ask(request);
    if (operation) {
        pa_operation_unref(operation);
        return;
    }
    Done failed = std::move(request->done);
    delete request;
    connection_.post([failed = std::move(failed)] { failed(false); });
}

void PulseAudioOutputs::setVolume(const std::string& id, double volume, Done done)
{
    std::uint8_t channels = 2;
    for (const auto& sink : connection_.outputs().sinks)
        if (sink.name == id && sink.channels > 0)
            channels = sink.channels;
    // Every channel alike, so that the average read back is the value set.
    pa_cvolume levels;
    pa_cvolume_set(&levels, channels, pa_volume_t(std::lround(volume * PA_VOLUME_NORM)));
    request(std::move(done), [&](Request* request) {
        return pa_context_set_sink_volume_by_name(connection_.context(), id.c_str(), &levels,
                                                  &Request::answer, request);
    });
}

void PulseAudioOutputs::setMuted(const std::string& id, bool muted, Done done)
{
    request(std::move(done), [&](Request* request) {
        return pa_context_set_sink_mute_by_name(connection_.context(), id.c_str(), muted ? 1 : 0,
                                                &Request::answer, request);
    });
}

void PulseAudioOutputs::makeDefault(const std::string& id, Done done)
{
    request(std::move(done), [&](Request* request) {
        request->sink = id;
        return pa_context_set_default_sink(
            connection_.context(), id.c_str(),
            [](pa_context* context, int success, void* data) {
                auto* request = static_cast<Request*>(data);
                // The streams that play now follow; new ones go to the default by themselves.
                if (success) {
                    auto* sink = new std::string(request->sink);
                    pa_operation* listing = pa_context_get_sink_input_info_list(
                        context,
                        [](pa_context* context, const pa_sink_input_info* input, int eol,
                           void* data) {
                            auto* sink = static_cast<std::string*>(data);
                            if (eol != 0) {
                                delete sink;
                                return;
                            }
                            pa_operation* moving = pa_context_move_sink_input_by_name(
                                context, input->index, sink->c_str(), nullptr, nullptr);
                            if (moving)
                                pa_operation_unref(moving);
                        },
                        sink);
                    if (listing)
                        pa_operation_unref(listing);
                    else
                        delete sink;
                }
                Request::answer(context, success, data);
            },
            request);
    });
}

} // namespace navro
