#include "platform/linux/DBusRemoteControl.h"

#include "app/Log.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace navro {

RemoteControlAdaptor::RemoteControlAdaptor(QObject* parent, const QDBusContext& call,
                                           RemoteControl& target)
    : QDBusAbstractAdaptor(parent), call_(call), target_(target)
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
    target_.openSettings(page);
}

void RemoteControlAdaptor::OpenTab(const QString& tab)
{
    if (!target_.openTab(tab) && call_.calledFromDBus())
        call_.sendErrorReply(QDBusError::InvalidArgs,
                             QStringLiteral("no tab is named \"%1\"").arg(tab.left(100)));
}

void RemoteControlAdaptor::StartTimer(double minutes, bool focus)
{
    if (!target_.startTimer(minutes, focus) && call_.calledFromDBus())
        call_.sendErrorReply(
            QDBusError::InvalidArgs,
            QStringLiteral("a timer runs for more than 0 and at most 1440 minutes"));
}

void RemoteControlAdaptor::StopTimer()
{
    target_.stopTimer();
}

QVariantMap toVariantMap(const RemoteState& state)
{
    return {
        {QStringLiteral("status"), state.status},
        {QStringLiteral("selectedTab"), state.selectedTab},
        {QStringLiteral("activityKind"), state.activityKind},
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

DBusRemoteControl::DBusRemoteControl(QDBusConnection connection, RemoteControl& target)
    : connection_(std::move(connection)), target_(target), published_(target.remoteState()),
      publishedNowPlaying_(target.remoteNowPlaying()),
      publishedNextPrayer_(target.remoteNextPrayer()),
      publishedNextMeeting_(target.remoteNextMeeting())
{
    if (!connection_.isConnected()) {
        failure_ = connection_.lastError().message();
        if (failure_.isEmpty()) {
            failure_ = QStringLiteral("not connected");
        }
        return;
    }
    new RemoteControlAdaptor(this, *this, target_);
    // The object goes up before the name, so that a second launch that sees the name can
    // already call it.
    if (!connection_.registerObject(QString::fromLatin1(remoteObjectPath), this,
                                    QDBusConnection::ExportAdaptors)) {
        failure_ = QStringLiteral("could not register %1").arg(QLatin1String(remoteObjectPath));
        return;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        connection_.interface()->registerService(QString::fromLatin1(remoteServiceName),
                                                 QDBusConnectionInterface::DontQueueService,
                                                 QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        failure_ = reply.error().message();
    } else if (reply.value() == QDBusConnectionInterface::ServiceNotRegistered) {
        outcome_ = Outcome::nameTaken;
        failure_ =
            QStringLiteral("%1 is owned by another process").arg(QLatin1String(remoteServiceName));
    } else {
        outcome_ = Outcome::published;
        return;
    }
    connection_.unregisterObject(QString::fromLatin1(remoteObjectPath));
}

DBusRemoteControl::~DBusRemoteControl()
{
    if (outcome_ == Outcome::published) {
        connection_.unregisterObject(QString::fromLatin1(remoteObjectPath));
        connection_.interface()->unregisterService(QString::fromLatin1(remoteServiceName));
    }
}

void DBusRemoteControl::stateChanged()
{
    const RemoteState current = target_.remoteState();
    if (current == published_) {
        return;
    }
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
    if (current == publishedNowPlaying_) {
        return;
    }
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

void DBusRemoteControl::announce(const QString& property, const QVariantMap& value)
{
    if (outcome_ != Outcome::published) {
        return;
    }
    QDBusMessage signal = QDBusMessage::createSignal(
        QString::fromLatin1(remoteObjectPath), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("PropertiesChanged"));
    signal << QString::fromLatin1(remoteInterfaceName) << QVariantMap{{property, value}}
           << QStringList();
    connection_.send(signal);
}

bool handOverToRunningInstance(QDBusConnection connection)
{
    if (!connection.isConnected()) {
        return false;
    }
    const QDBusReply<bool> owned =
        connection.interface()->isServiceRegistered(QString::fromLatin1(remoteServiceName));
    if (!owned.isValid() || !owned.value()) {
        return false;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QString::fromLatin1(remoteServiceName), QString::fromLatin1(remoteObjectPath),
        QString::fromLatin1(remoteInterfaceName), QStringLiteral("Open"));
    call << true;
    // The event loop keeps turning while we wait, so a running instance in this very process
    // (tests) can answer.
    const QDBusMessage reply = connection.call(call, QDBus::BlockWithGui, 5000);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        logLine("could not reach the running Navro: " + reply.errorMessage().toStdString());
        return false;
    }
    return true;
}

std::unique_ptr<RemoteControlPublisher> publishRemoteControl(QDBusConnection connection,
                                                             RemoteControl& target)
{
    auto control = std::make_unique<DBusRemoteControl>(std::move(connection), target);
    if (control->outcome() != DBusRemoteControl::Outcome::published) {
        logLine("remote control unavailable: " + control->failure().toStdString());
        return nullptr;
    }
    return control;
}

bool handOverToRunningInstance()
{
    return handOverToRunningInstance(QDBusConnection::sessionBus());
}

std::unique_ptr<RemoteControlPublisher> publishRemoteControl(RemoteControl& target)
{
    return publishRemoteControl(QDBusConnection::sessionBus(), target);
}

} // namespace navro
