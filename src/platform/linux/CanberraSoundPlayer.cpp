#include "platform/linux/CanberraSoundPlayer.h"

#include "app/Log.h"

#include <canberra.h>

namespace navro {

CanberraSoundPlayer::CanberraSoundPlayer() : worker_(std::make_unique<QObject>())
{
    thread_.setObjectName(QStringLiteral("navro-sound"));
}

CanberraSoundPlayer::~CanberraSoundPlayer()
{
    thread_.quit();
    thread_.wait();
    // The thread is gone: nothing else touches the context now.
    if (context_)
        ca_context_destroy(context_);
}

void CanberraSoundPlayer::playEvent(const std::string& eventId, const std::string& description)
{
    if (!thread_.isRunning()) {
        worker_->moveToThread(&thread_);
        thread_.start(QThread::LowPriority);
    }
    QMetaObject::invokeMethod(
        worker_.get(), [this, eventId, description] { play(eventId, description); },
        Qt::QueuedConnection);
}

void CanberraSoundPlayer::play(const std::string& eventId, const std::string& description)
{
    if (!context_) {
        int error = ca_context_create(&context_);
        if (error == CA_SUCCESS)
            error = ca_context_change_props(context_, CA_PROP_APPLICATION_NAME, "Navro",
                                            CA_PROP_APPLICATION_ID, "io.navro.Navro",
                                            CA_PROP_APPLICATION_ICON_NAME, "navro", nullptr);
        if (error == CA_SUCCESS)
            error = ca_context_open(context_);
        if (error != CA_SUCCESS) {
            // Opened again with the next sound: the sound server may have come up since.
            if (context_)
                ca_context_destroy(context_);
            context_ = nullptr;
            noteFailure(eventId, error);
            return;
        }
    }
    // Kept in the server's sample cache for a while, so a second timer's sound costs nothing.
    const int error =
        ca_context_play(context_, 0, CA_PROP_EVENT_ID, eventId.c_str(), CA_PROP_EVENT_DESCRIPTION,
                        description.c_str(), CA_PROP_CANBERRA_CACHE_CONTROL, "volatile", nullptr);
    if (error != CA_SUCCESS) {
        noteFailure(eventId, error);
        return;
    }
    lastError_ = CA_SUCCESS;
}

void CanberraSoundPlayer::noteFailure(const std::string& eventId, int error)
{
    // One line per kind of failure, not one per sound.
    if (error == lastError_)
        return;
    lastError_ = error;
    logLine("could not play the sound \"" + eventId + "\": " + ca_strerror(error));
}

std::unique_ptr<SoundPlayer> makeSoundPlayer()
{
    return std::make_unique<CanberraSoundPlayer>();
}

} // namespace navro
