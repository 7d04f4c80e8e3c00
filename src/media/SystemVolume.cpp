#include "media/SystemVolume.h"

#include <QPointer>
#include <algorithm>
#include <cmath>

namespace navro {
namespace {

// The bars' capture may show up as an output of its own on some sound servers.
bool isNavrosOwn(const AudioOutput& output)
{
    return output.name.find("Navro") != std::string::npos;
}

} // namespace

SystemVolume::SystemVolume(AudioOutputControl& control, QObject* parent)
    : QObject(parent), control_(control)
{
    control_.setOutputsChanged([this](const AudioOutputs& outputs) { apply(outputs); });
}

SystemVolume::~SystemVolume()
{
    control_.setOutputsChanged({});
}

const AudioOutput* SystemVolume::current() const
{
    const auto found = std::find_if(last_.outputs.begin(), last_.outputs.end(),
                                    [this](const auto& o) { return o.id == last_.defaultId; });
    return found == last_.outputs.end() ? nullptr : &*found;
}

void SystemVolume::apply(const AudioOutputs& outputs)
{
    last_ = outputs;
    const AudioOutput* output = current();
    bool any = false;
    // An output that disappears leaves the last volume shown, greyed out.
    if (output) {
        publishVolume(std::clamp(output->volume, 0.0, 1.0));
        publishMuted(output->muted);
    }
    const bool canSet = output && output->canSetVolume;
    if (canSet != canSetVolume_) {
        canSetVolume_ = canSet;
        emit canSetVolumeChanged();
        any = true;
    }
    const QString name = output ? QString::fromStdString(output->name) : QString();
    if (name != outputName_) {
        outputName_ = name;
        emit outputNameChanged();
        any = true;
    }
    choosable_.clear();
    QStringList names;
    for (const auto& candidate : outputs.outputs) {
        if (isNavrosOwn(candidate))
            continue;
        choosable_.push_back(candidate);
        names << QString::fromStdString(candidate.name);
    }
    if (names != outputNames_) {
        outputNames_ = names;
        emit outputsChanged();
        any = true;
    }
    if (any)
        emit changed();
}

void SystemVolume::publishVolume(double volume)
{
    if (volume == volume_)
        return;
    volume_ = volume;
    emit volumeChanged();
    emit changed();
}

void SystemVolume::publishMuted(bool muted)
{
    if (muted == isMuted_)
        return;
    isMuted_ = muted;
    emit isMutedChanged();
    emit changed();
}

void SystemVolume::set(double volume)
{
    if (std::isnan(volume))
        return;
    const AudioOutput* output = current();
    if (!output || !output->canSetVolume)
        return;
    const double clamped = std::clamp(volume, 0.0, 1.0);
    const double before = volume_;
    publishVolume(clamped);
    QPointer<SystemVolume> self(this);
    const std::string id = output->id;
    control_.setVolume(id, clamped, [self, id, clamped, before](bool succeeded) {
        if (!self)
            return;
        if (!succeeded) {
            // Back to what the output still has, unless something newer was shown meanwhile.
            if (self->volume_ == clamped)
                self->publishVolume(before);
            return;
        }
        if (self->isMuted_ && clamped > 0)
            self->control_.setMuted(id, false, [self](bool unmuted) {
                if (self && unmuted)
                    self->publishMuted(false);
            });
    });
}

void SystemVolume::toggleMute()
{
    const AudioOutput* output = current();
    if (!output)
        return;
    QPointer<SystemVolume> self(this);
    const bool wanted = !isMuted_;
    control_.setMuted(output->id, wanted, [self, wanted](bool succeeded) {
        if (self && succeeded)
            self->publishMuted(wanted);
    });
}

bool SystemVolume::selectOutput(const QString& name)
{
    const std::string wanted = name.toStdString();
    const auto found = std::find_if(choosable_.begin(), choosable_.end(),
                                    [&wanted](const auto& o) { return o.name == wanted; });
    if (found == choosable_.end())
        return false;
    control_.makeDefault(found->id, [](bool) {});
    return true;
}

} // namespace navro
