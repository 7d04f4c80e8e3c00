#pragma once

#include "app/RemoteControl.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QVariantMap>

namespace navro {

inline constexpr auto remoteServiceName = "io.navro.Navro";
inline constexpr auto remoteObjectPath = "/io/navro/Navro";
inline constexpr auto remoteInterfaceName = "io.navro.Navro";

// The io.navro.Navro interface as seen on the bus; forwards every call to the RemoteControl.
// A call with arguments the target refuses is answered with a D-Bus error, through the context
// of the call, which Qt D-Bus keeps on the object the adaptor belongs to.
class RemoteControlAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.navro.Navro")
    Q_PROPERTY(QVariantMap State READ state)
    Q_PROPERTY(QVariantMap Timer READ timer)
    Q_PROPERTY(QVariantMap NowPlaying READ nowPlaying)
    Q_PROPERTY(QVariantMap NextPrayer READ nextPrayer)
    Q_PROPERTY(QVariantMap NextMeeting READ nextMeeting)

public:
    RemoteControlAdaptor(QObject* parent, const QDBusContext& call, RemoteControl& target);

    QVariantMap state() const;
    QVariantMap timer() const;
    QVariantMap nowPlaying() const;
    QVariantMap nextPrayer() const;
    QVariantMap nextMeeting() const;

public slots:
    void Open(bool focus);
    void Close();
    void Toggle();
    void ShowOnboarding();
    void OpenSettings(const QString& page);
    void OpenTab(const QString& tab);
    void StartTimer(double minutes, bool focus);
    void StopTimer();

private:
    const QDBusContext& call_;
    RemoteControl& target_;
};

QVariantMap toVariantMap(const RemoteState& state);
QVariantMap toVariantMap(const RemoteTimer& timer);
// Empty while nothing plays.
QVariantMap toVariantMap(const std::optional<RemoteNowPlaying>& nowPlaying);
// Empty without one.
QVariantMap toVariantMap(const std::optional<RemoteNextPrayer>& prayer);
QVariantMap toVariantMap(const std::optional<RemoteNextMeeting>& meeting);

// Owns the bus name and the object for as long as it lives.
class DBusRemoteControl final : public QObject, public RemoteControlPublisher, public QDBusContext {
    Q_OBJECT

public:
    enum class Outcome { published, nameTaken, failed };

    DBusRemoteControl(QDBusConnection connection, RemoteControl& target);
    ~DBusRemoteControl() override;

    Outcome outcome() const { return outcome_; }
    QString failure() const { return failure_; }

    void stateChanged() override;
    void timerChanged() override;
    void nowPlayingChanged() override;
    void nextPrayerChanged() override;
    void nextMeetingChanged() override;

private:
    void announce(const QString& property, const QVariantMap& value);

    QDBusConnection connection_;
    RemoteControl& target_;
    RemoteState published_;
    std::optional<RemoteNowPlaying> publishedNowPlaying_;
    std::optional<RemoteNextPrayer> publishedNextPrayer_;
    std::optional<RemoteNextMeeting> publishedNextMeeting_;
    Outcome outcome_ = Outcome::failed;
    QString failure_;
};

// Both take the connection so that tests can use a bus of their own.
bool handOverToRunningInstance(QDBusConnection connection);
std::unique_ptr<RemoteControlPublisher> publishRemoteControl(QDBusConnection connection,
                                                             RemoteControl& target);

} // namespace navro
