#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

namespace navro {

// The system's outputs as the platform reports them, in the system's order.
struct AudioOutput {
    std::string id;    // the platform's name for it
    std::string name;  // what a user reads
    double volume = 0; // 0…1
    bool muted = false;
    bool canSetVolume = true;
    bool operator==(const AudioOutput&) const = default;
};

struct AudioOutputs {
    std::vector<AudioOutput> outputs;
    std::string defaultId; // empty when there is no default output
    bool operator==(const AudioOutputs&) const = default;
};

// What the volume needs of the platform. Every change is asked for and answered later, on this
// thread: `done(false)` when the system refused it.
class AudioOutputControl {
public:
    using Done = std::function<void(bool succeeded)>;

    virtual ~AudioOutputControl() = default;
    // Called on this thread with the outputs as they are now, and again on every change.
    virtual void setOutputsChanged(std::function<void(const AudioOutputs&)> changed) = 0;
    virtual void setVolume(const std::string& id, double volume, Done done) = 0;
    virtual void setMuted(const std::string& id, bool muted, Done done) = 0;
    // Makes the output the default and moves what plays now to it.
    virtual void makeDefault(const std::string& id, Done done) = 0;
};

// The volume, mute and choice of output of the system's default output, for the Music tab's
// slider, the Devices tab's Sound section and the bus. A change made elsewhere (the desktop's
// mixer, media keys) arrives through the platform's notifications. A change that fails leaves
// everything as it was.
class SystemVolume : public QObject {
    Q_OBJECT
    Q_PROPERTY(double volume READ volume NOTIFY volumeChanged)
    Q_PROPERTY(bool isMuted READ isMuted NOTIFY isMutedChanged)
    Q_PROPERTY(bool canSetVolume READ canSetVolume NOTIFY canSetVolumeChanged)
    Q_PROPERTY(QString outputName READ outputName NOTIFY outputNameChanged)
    Q_PROPERTY(QStringList outputs READ outputs NOTIFY outputsChanged)

public:
    explicit SystemVolume(AudioOutputControl& control, QObject* parent = nullptr);
    ~SystemVolume() override;

    double volume() const { return volume_; }
    bool isMuted() const { return isMuted_; }
    bool canSetVolume() const { return canSetVolume_; }
    QString outputName() const { return outputName_; }
    // The names of the outputs a user can choose, the bars' own capture never among them.
    QStringList outputs() const { return outputNames_; }

    // The slider: clamped to 0…1, shown at once; raising a muted output unmutes it.
    Q_INVOKABLE void set(double volume);
    Q_INVOKABLE void toggleMute();
    // False, with nothing changed, when no output has that name.
    Q_INVOKABLE bool selectOutput(const QString& name);

signals:
    void volumeChanged();
    void isMutedChanged();
    void canSetVolumeChanged();
    void outputNameChanged();
    void outputsChanged();
    // After a change of any of the above, for those who watch them all (the bus).
    void changed();

private:
    void apply(const AudioOutputs& outputs);
    void publishVolume(double volume);
    void publishMuted(bool muted);
    const AudioOutput* current() const;

    AudioOutputControl& control_;
    AudioOutputs last_;
    std::vector<AudioOutput> choosable_;
    double volume_ = 0;
    bool isMuted_ = false;
    bool canSetVolume_ = false;
    QString outputName_;
    QStringList outputNames_;
};

} // namespace navro
