#pragma once

#include "app/RemoteControl.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QFileSystemWatcher>
#include <QTimer>
#include <QVariantMap>
#include <chrono>
#include <optional>

namespace navro {

inline constexpr auto remoteServiceName = "io.navro.Navro";
inline constexpr auto remoteObjectPath = "/io/navro/Navro";
inline constexpr auto remoteInterfaceName = "io.navro.Navro";

class DBusRemoteControl;

// The io.navro.Navro interface as seen on the bus; forwards every call to the RemoteControl. A
// call the target refuses is answered with org.freedesktop.DBus.Error.InvalidArgs, through the
// context of the call, which Qt D-Bus keeps on the object the adaptor belongs to.
class RemoteControlAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.navro.Navro")
    Q_PROPERTY(QVariantMap State READ state)
    Q_PROPERTY(QVariantMap Timer READ timer)
    Q_PROPERTY(QVariantMap NowPlaying READ nowPlaying)
    Q_PROPERTY(QVariantMap NextPrayer READ nextPrayer)
    Q_PROPERTY(QVariantMap NextMeeting READ nextMeeting)
    Q_PROPERTY(QVariantMap Volume READ volume)
    Q_PROPERTY(QVariantMap Devices READ devices)

public:
    RemoteControlAdaptor(DBusRemoteControl& control, RemoteControl& target);

    QVariantMap state() const;
    QVariantMap timer() const;
    QVariantMap nowPlaying() const;
    QVariantMap nextPrayer() const;
    QVariantMap nextMeeting() const;
    QVariantMap volume() const;
    QVariantMap devices() const;

public slots:
    void Open(bool focus);
    void Close();
    void Toggle();
    void ShowOnboarding();
    void OpenSettings(const QString& page);
    void OpenTab(const QString& tab);
    void StartTimer(double minutes, bool focus);
    void StopTimer();
    void TakeScreenshot(const QString& mode);
    void StartRecording(const QString& mode);
    void StopRecording();
    void SetVolume(double volume);
    void ToggleMute();
    void SelectOutput(const QString& name);

private:
    void answer(const RemoteRefusal& refusal);

    DBusRemoteControl& control_;
    RemoteControl& target_;
};

QVariantMap toVariantMap(const RemoteState& state);
QVariantMap toVariantMap(const RemoteTimer& timer);
// Empty while nothing plays.
QVariantMap toVariantMap(const std::optional<RemoteNowPlaying>& nowPlaying);
// Empty without one.
QVariantMap toVariantMap(const std::optional<RemoteNextPrayer>& prayer);
QVariantMap toVariantMap(const std::optional<RemoteNextMeeting>& meeting);
QVariantMap toVariantMap(const RemoteVolume& volume);

// Keeps the RemoteControl published on the session bus at one address: the object and the name
// io.navro.Navro, now if it can, and again whenever the bus comes back after going away (the
// socket file reappearing tells when; other kinds of address are tried again now and then).
class DBusRemoteControl final : public QObject, public RemoteControlPublisher, public QDBusContext {
    Q_OBJECT

public:
    enum class Outcome { published, nameTaken, failed };

    // `knownProblem`: why the bus at `address` is not to be tried as it is now (it was found
    // silent at start); it is tried once its socket changes.
    DBusRemoteControl(QString address, RemoteControl& target, QString knownProblem = {});
    ~DBusRemoteControl() override;

    Outcome outcome() const { return outcome_; }
    QString failure() const { return failure_; }

    void stateChanged() override;
    void timerChanged() override;
    void nowPlayingChanged() override;
    void nextPrayerChanged() override;
    void nextMeetingChanged() override;
    void volumeChanged() override;
    void devicesChanged() override;

private slots:
    void onDisconnected();

private:
    void announce(const QString& property, const QVariantMap& value);
    void publish();
    void withdraw();
    void watchForTheBus();
    void busMayBeBack();

    QString address_;
    RemoteControl& target_;
    RemoteState published_;
    std::optional<RemoteNowPlaying> publishedNowPlaying_;
    std::optional<RemoteNextPrayer> publishedNextPrayer_;
    std::optional<RemoteNextMeeting> publishedNextMeeting_;
    RemoteVolume publishedVolume_;
    QVariantMap publishedDevices_;
    std::optional<QDBusConnection> connection_;
    QString connectionName_;
    Outcome outcome_ = Outcome::failed;
    QString failure_;
    QFileSystemWatcher socketWatcher_;
    QString socketPath_;
    QString lastSocketTried_; // identity of the socket file last tried, to try each one once
    QTimer retry_;
};

// For tests, which run buses of their own.
std::unique_ptr<RemoteControlPublisher> publishRemoteControl(const QString& address,
                                                             RemoteControl& target,
                                                             const QString& knownProblem = {});
std::optional<std::string> handOverToRunningInstance(QDBusConnection connection,
                                                     std::chrono::milliseconds patience);

} // namespace navro
