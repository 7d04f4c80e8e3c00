#include "platform/linux/DBusRemoteControl.h"

#include "app/Log.h"
#include "platform/linux/BusProbe.h"
#include "platform/linux/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QFileInfo>
#include <sys/stat.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

// Every call to the bus made on the way to the first frame is bounded: a bus that is alive
// answers in milliseconds, and one that does not must not hold the start-up.
constexpr int callTimeoutMs = 2000;
// A bus at start may still be coming up, or at an address that gives no sign of its return.
constexpr auto firstRetry = 5s;
constexpr auto longestRetry = 60s;

const QString localPath = QStringLiteral("/org/freedesktop/DBus/Local");
const QString localInterface = QStringLiteral("org.freedesktop.DBus.Local");

QString serviceName()
{
    return QString::fromLatin1(remoteServiceName);
}

QString objectPath()
{
    return QString::fromLatin1(remoteObjectPath);
}

// The socket file's identity: a bus that starts again makes a new one.
QString socketIdentity(const QString& path)
{
    struct stat info {};
    if (::stat(path.toLocal8Bit().constData(), &info) != 0)
        return {};
    return QStringLiteral("%1:%2.%3")
        .arg(info.st_ino)
        .arg(info.st_ctim.tv_sec)
        .arg(info.st_ctim.tv_nsec);
}

} // namespace

RemoteControlAdaptor::RemoteControlAdaptor(DBusRemoteControl& control, RemoteControl& target)
    : QDBusAbstractAdaptor(&control), control_(control), target_(target)
{
}

QVariantMap RemoteControlAdaptor::state() const
{
    return toVariantMap(target_.remoteState());
}

QVariantMap RemoteControlAdaptor::timer() const
{
    return toVariantMap(target_.remoteTimer());
}

QVariantMap RemoteControlAdaptor::nowPlaying() const
{
    return toVariantMap(target_.remoteNowPlaying());
}

QVariantMap RemoteControlAdaptor::nextPrayer() const
{
    return toVariantMap(target_.remoteNextPrayer());
}

QVariantMap RemoteControlAdaptor::nextMeeting() const
{
    return toVariantMap(target_.remoteNextMeeting());
}

QVariantMap RemoteControlAdaptor::volume() const
{
    return toVariantMap(target_.remoteVolume());
}

QVariantMap RemoteControlAdaptor::devices() const
{
    return target_.remoteDevices();
}

void RemoteControlAdaptor::Open(bool focus)
{
    target_.open(focus);
}

void RemoteControlAdaptor::Close()
{
    target_.close();
}

void RemoteControlAdaptor::Toggle()
{
    target_.toggle();
}

void RemoteControlAdaptor::ShowOnboarding()
{
    target_.showOnboarding();
}

void RemoteControlAdaptor::OpenSettings(const QString& page)
{
    answer(target_.openSettings(page));
}

void RemoteControlAdaptor::OpenTab(const QString& tab)
{
    answer(target_.openTab(tab));
}

void RemoteControlAdaptor::StartTimer(double minutes, bool focus)
{
    answer(target_.startTimer(minutes, focus));
}

void RemoteControlAdaptor::StopTimer()
{
    target_.stopTimer();
}

void RemoteControlAdaptor::TakeScreenshot(const QString& mode)
{
    answer(target_.takeScreenshot(mode));
}

void RemoteControlAdaptor::StartRecording(const QString& mode)
{
    answer(target_.startRecording(mode));
}

void RemoteControlAdaptor::StopRecording()
{
    target_.stopRecording();
}

void RemoteControlAdaptor::answer(const RemoteRefusal& refusal)
{
    if (refusal && control_.calledFromDBus())
        control_.sendErrorReply(QDBusError::InvalidArgs, *refusal);
}

void RemoteControlAdaptor::SetVolume(double volume)
{
    target_.setVolume(volume);
}

void RemoteControlAdaptor::ToggleMute()
{
    target_.toggleMute();
}

void RemoteControlAdaptor::SelectOutput(const QString& name)
{
    answer(target_.selectOutput(name));
}

QVariantMap toVariantMap(const RemoteState& state)
{
    return {
        {QStringLiteral("status"), state.status},
        {QStringLiteral("selectedTab"), state.selectedTab},
        {QStringLiteral("activityKind"), state.activityKind},
        {QStringLiteral("activityTitle"), state.activityTitle},
        {QStringLiteral("activityDetail"), state.activityDetail},
        {QStringLiteral("notchEnabled"), state.notchEnabled},
        {QStringLiteral("panelVisible"), state.panelVisible},
        {QStringLiteral("language"), state.language},
    };
}

QVariantMap toVariantMap(const RemoteTimer& timer)
{
    return {
        {QStringLiteral("state"), timer.state},
        {QStringLiteral("remaining"), timer.remaining},
        {QStringLiteral("total"), timer.total},
        {QStringLiteral("focus"), timer.focus},
    };
}

QVariantMap toVariantMap(const std::optional<RemoteNowPlaying>& nowPlaying)
{
    if (!nowPlaying)
        return {};
    return {
        {QStringLiteral("title"), nowPlaying->title},
        {QStringLiteral("artist"), nowPlaying->artist},
        {QStringLiteral("album"), nowPlaying->album},
        {QStringLiteral("app"), nowPlaying->app},
        {QStringLiteral("playing"), nowPlaying->playing},
        {QStringLiteral("elapsed"), nowPlaying->elapsed},
        {QStringLiteral("duration"), nowPlaying->duration},
    };
}

QVariantMap toVariantMap(const std::optional<RemoteNextPrayer>& prayer)
{
    if (!prayer)
        return {};
    return {{QStringLiteral("prayer"), prayer->prayer},
            {QStringLiteral("at"), prayer->at},
            {QStringLiteral("city"), prayer->city}};
}

QVariantMap toVariantMap(const std::optional<RemoteNextMeeting>& meeting)
{
    if (!meeting)
        return {};
    return {{QStringLiteral("title"), meeting->title},
            {QStringLiteral("start"), meeting->start},
            {QStringLiteral("end"), meeting->end},
            {QStringLiteral("joinLink"), meeting->joinLink}};
}

QVariantMap toVariantMap(const RemoteVolume& volume)
{
    return {
        {QStringLiteral("volume"), volume.volume},
        {QStringLiteral("muted"), volume.muted},
        {QStringLiteral("output"), volume.output},
        {QStringLiteral("outputs"), volume.outputs},
    };
}

DBusRemoteControl::DBusRemoteControl(QString address, RemoteControl& target, QString knownProblem)
    : address_(QString::fromStdString(withoutServerIdentity(address.toStdString()))),
      target_(target), published_(target.remoteState()),
      publishedNowPlaying_(target.remoteNowPlaying()),
      publishedNextPrayer_(target.remoteNextPrayer()),
      publishedNextMeeting_(target.remoteNextMeeting()), publishedVolume_(target.remoteVolume()),
      publishedDevices_(target.remoteDevices())
{
    new RemoteControlAdaptor(*this, target_);
    socketPath_ = QString::fromStdString(busSocketPath(address_.toStdString()).value_or(""));
    connect(&socketWatcher_, &QFileSystemWatcher::directoryChanged, this,
            &DBusRemoteControl::busMayBeBack);
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, &DBusRemoteControl::busMayBeBack);

    if (knownProblem.isEmpty()) {
        publish();
    } else {
        failure_ = knownProblem;
        lastSocketTried_ = socketIdentity(socketPath_);
    }
    if (outcome_ != Outcome::published)
        watchForTheBus();
}

DBusRemoteControl::~DBusRemoteControl()
{
    withdraw();
}

void DBusRemoteControl::publish()
{
    withdraw();
    if (address_.isEmpty()) {
        failure_ = QStringLiteral("no session bus address");
        return;
    }
    // Connections are shared by name within the process, so every one gets a name of its own.
    static int connections = 0;
    connectionName_ = QStringLiteral("navro-remote-%1").arg(++connections);
    connection_ = QDBusConnection::connectToBus(address_, connectionName_);
    outcome_ = Outcome::failed;
    if (!connection_->isConnected()) {
        failure_ = connection_->lastError().message();
        if (failure_.isEmpty())
            failure_ = QStringLiteral("not connected");
        withdraw();
        return;
    }
    connection_->interface()->setTimeout(callTimeoutMs);
    connection_->connect(QString(), localPath, localInterface, QStringLiteral("Disconnected"), this,
                         SLOT(onDisconnected()));
    // The object goes up before the name, so that a second launch that sees the name can
    // already call it.
    if (!connection_->registerObject(objectPath(), this, QDBusConnection::ExportAdaptors)) {
        failure_ = QStringLiteral("could not register %1").arg(objectPath());
        withdraw();
        return;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        connection_->interface()->registerService(serviceName(),
                                                  QDBusConnectionInterface::DontQueueService,
                                                  QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        failure_ = reply.error().message();
    } else if (reply.value() == QDBusConnectionInterface::ServiceNotRegistered) {
        outcome_ = Outcome::nameTaken;
        failure_ = QStringLiteral("%1 is owned by another process").arg(serviceName());
    } else {
        outcome_ = Outcome::published;
        failure_.clear();
        retry_.stop();
        // What changed while no one could see it.
        published_ = target_.remoteState();
        publishedNowPlaying_ = target_.remoteNowPlaying();
        return;
    }
    const Outcome outcome = outcome_;
    withdraw();
    outcome_ = outcome;
}

void DBusRemoteControl::withdraw()
{
    if (!connection_)
        return;
    if (outcome_ == Outcome::published && connection_->isConnected()) {
        connection_->unregisterObject(objectPath());
        connection_->interface()->unregisterService(serviceName());
    }
    connection_.reset();
    QDBusConnection::disconnectFromBus(connectionName_);
    outcome_ = Outcome::failed;
}

void DBusRemoteControl::onDisconnected()
{
    logLine("lost the session bus; the remote control is published again when it comes back");
    withdraw();
    failure_ = QStringLiteral("the session bus went away");
    lastSocketTried_.clear();
    watchForTheBus();
}

void DBusRemoteControl::watchForTheBus()
{
    if (!socketPath_.isEmpty()) {
        // The folder, because a bus that starts again makes a new socket file.
        const QString folder = QFileInfo(socketPath_).absolutePath();
        if (!socketWatcher_.directories().contains(folder))
            socketWatcher_.addPath(folder);
        return;
    }
    if (!retry_.isActive())
        retry_.start(firstRetry);
}

void DBusRemoteControl::busMayBeBack()
{
    if (outcome_ == Outcome::published)
        return;
    if (!socketPath_.isEmpty()) {
        // Each socket file is tried once: the folder also changes for every other file in it.
        const QString identity = socketIdentity(socketPath_);
        if (identity.isEmpty() || identity == lastSocketTried_)
            return;
        lastSocketTried_ = identity;
    }
    // A bus just starting, or one that never answers, must not hold Navro up.
    const BusProbe probe =
        probeBus(address_.toStdString(), std::chrono::milliseconds(callTimeoutMs));
    if (probe.answer == BusProbe::Answer::answers || probe.answer == BusProbe::Answer::unknown)
        publish();
    if (outcome_ == Outcome::published) {
        socketWatcher_.removePaths(socketWatcher_.directories());
        logLine("remote control published again on the session bus");
        return;
    }
    if (socketPath_.isEmpty())
        retry_.start(
            std::min<std::chrono::milliseconds>(retry_.intervalAsDuration() * 2, longestRetry));
}

void DBusRemoteControl::stateChanged()
{
    const RemoteState current = target_.remoteState();
    if (current == published_)
        return;
    published_ = current;
    announce(QStringLiteral("State"), toVariantMap(current));
}

void DBusRemoteControl::timerChanged()
{
    announce(QStringLiteral("Timer"), toVariantMap(target_.remoteTimer()));
}

void DBusRemoteControl::nowPlayingChanged()
{
    auto current = target_.remoteNowPlaying();
    if (current == publishedNowPlaying_)
        return;
    publishedNowPlaying_ = current;
    announce(QStringLiteral("NowPlaying"), toVariantMap(current));
}

void DBusRemoteControl::nextPrayerChanged()
{
    auto current = target_.remoteNextPrayer();
    if (current == publishedNextPrayer_)
        return;
    publishedNextPrayer_ = current;
    announce(QStringLiteral("NextPrayer"), toVariantMap(current));
}

void DBusRemoteControl::nextMeetingChanged()
{
    auto current = target_.remoteNextMeeting();
    if (current == publishedNextMeeting_)
        return;
    publishedNextMeeting_ = current;
    announce(QStringLiteral("NextMeeting"), toVariantMap(current));
}

void DBusRemoteControl::volumeChanged()
{
    const RemoteVolume current = target_.remoteVolume();
    if (current == publishedVolume_) {
        return;
    }
    publishedVolume_ = current;
    announce(QStringLiteral("Volume"), toVariantMap(current));
}

void DBusRemoteControl::devicesChanged()
{
    QVariantMap current = target_.remoteDevices();
    if (current == publishedDevices_)
        return;
    publishedDevices_ = current;
    announce(QStringLiteral("Devices"), current);
}

void DBusRemoteControl::announce(const QString& property, const QVariantMap& value)
{
    if (outcome_ != Outcome::published)
        return;
    QDBusMessage signal =
        QDBusMessage::createSignal(objectPath(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    signal << QString::fromLatin1(remoteInterfaceName) << QVariantMap{{property, value}}
           << QStringList();
    connection_->send(signal);
}

std::optional<std::string> handOverToRunningInstance(QDBusConnection connection,
                                                     std::chrono::milliseconds patience)
{
    if (!connection.isConnected())
        return "no session bus: " + connection.lastError().message().toStdString();
    connection.interface()->setTimeout(callTimeoutMs);
    // Watching first, so that a name taken between the look and the wait is not missed.
    QDBusServiceWatcher watcher(serviceName(), connection,
                                QDBusServiceWatcher::WatchForRegistration);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    const auto registered = [&] {
        const QDBusReply<bool> owned = connection.interface()->isServiceRegistered(serviceName());
        return owned.isValid() && owned.value();
    };
    if (!registered()) {
        QTimer::singleShot(patience, &loop, &QEventLoop::quit);
        loop.exec();
        if (!registered())
            return "it did not take its name on the session bus within " +
                   std::to_string(
                       std::chrono::duration_cast<std::chrono::seconds>(patience).count()) +
                   " s";
    }
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName(), objectPath(),
                                                       QString::fromLatin1(remoteInterfaceName),
                                                       QStringLiteral("Open"));
    call << true;
    // The event loop keeps turning while we wait, so a running instance in this very process
    // (tests) can answer.
    const QDBusMessage reply = connection.call(call, QDBus::BlockWithGui, callTimeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage)
        return "it did not answer: " + reply.errorMessage().toStdString();
    return std::nullopt;
}

std::unique_ptr<RemoteControlPublisher>
publishRemoteControl(const QString& address, RemoteControl& target, const QString& knownProblem)
{
    auto control = std::make_unique<DBusRemoteControl>(address, target, knownProblem);
    if (control->outcome() != DBusRemoteControl::Outcome::published)
        logLine("remote control unavailable: " + control->failure().toStdString());
    return control;
}

std::optional<std::string> handOverToRunningInstance(std::chrono::milliseconds patience)
{
    if (const std::string problem = sessionBusProblem(); !problem.empty())
        return problem;
    return handOverToRunningInstance(QDBusConnection::sessionBus(), patience);
}

std::unique_ptr<RemoteControlPublisher> publishRemoteControl(RemoteControl& target)
{
    return publishRemoteControl(QString::fromStdString(sessionBusAddress()), target,
                                QString::fromStdString(sessionBusProblem()));
}

} // namespace navro
