#include "platform/linux/DBusSleepPreventer.h"

#include "app/Log.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace navro {
namespace {

// A desktop service that takes longer than this is not coming; the timer runs on without it.
constexpr int callTimeoutMs = 3000;
// On the way out, how long a give-back may hold up the end of the process.
constexpr int exitTimeoutMs = 1000;

} // namespace

const std::vector<DBusSleepPreventer::Inhibitor>& DBusSleepPreventer::inhibitors()
{
    static const std::vector<Inhibitor> list{
        {QStringLiteral("org.freedesktop.ScreenSaver"),
         QStringLiteral("/org/freedesktop/ScreenSaver"),
         QStringLiteral("org.freedesktop.ScreenSaver")},
        {QStringLiteral("org.freedesktop.PowerManagement"),
         QStringLiteral("/org/freedesktop/PowerManagement/Inhibit"),
         QStringLiteral("org.freedesktop.PowerManagement.Inhibit")},
    };
    return list;
}

DBusSleepPreventer::DBusSleepPreventer(QDBusConnection connection, QObject* parent)
    : QObject(parent), connection_(std::move(connection))
{
}

DBusSleepPreventer::~DBusSleepPreventer()
{
    wanted_ = false;
    if (inhibiting_) {
        // A hold may be granted any moment now; take the answer so that it can be given back.
        QDBusPendingCall call = *inhibiting_;
        delete inhibiting_;
        inhibiting_ = nullptr;
        call.waitForFinished();
        const QDBusPendingReply<uint> reply = call;
        if (reply.isValid())
            cookie_ = Hold{inhibitingWith_, reply.value()};
    }
    if (cookie_)
        connection_.call(unInhibitMessage(*cookie_), QDBus::Block, exitTimeoutMs);
    for (QDBusPendingCall& release : releases_)
        release.waitForFinished();
}

void DBusSleepPreventer::keepAwake()
{
    wanted_ = true;
    if (cookie_ || inhibiting_)
        return;
    inhibitWith(0);
}

void DBusSleepPreventer::allowSleep()
{
    wanted_ = false;
    // A hold still being asked for is given back when it arrives.
    if (!cookie_)
        return;
    releases_.erase(std::remove_if(releases_.begin(), releases_.end(),
                                   [](const QDBusPendingCall& call) { return call.isFinished(); }),
                    releases_.end());
    releases_.push_back(connection_.asyncCall(unInhibitMessage(*cookie_), callTimeoutMs));
    cookie_.reset();
}

void DBusSleepPreventer::inhibitWith(std::size_t inhibitor)
{
    const Inhibitor& target = inhibitors().at(inhibitor);
    QDBusMessage message = QDBusMessage::createMethodCall(
        target.service, target.path, target.interface, QStringLiteral("Inhibit"));
    message << QStringLiteral("Navro") << QStringLiteral("Navro timer");
    inhibitingWith_ = inhibitor;
    inhibiting_ = new QDBusPendingCallWatcher(connection_.asyncCall(message, callTimeoutMs), this);
    connect(inhibiting_, &QDBusPendingCallWatcher::finished, this,
            [this, inhibitor](QDBusPendingCallWatcher* watcher) {
                watcher->deleteLater();
                if (watcher != inhibiting_)
                    return;
                inhibiting_ = nullptr;
                onInhibitReply(inhibitor, *watcher);
            });
}

void DBusSleepPreventer::onInhibitReply(std::size_t inhibitor, const QDBusPendingCall& call)
{
    const QDBusPendingReply<uint> reply = call;
    if (reply.isValid()) {
        failureLogged_ = false;
        cookie_ = Hold{inhibitor, reply.value()};
        if (!wanted_)
            allowSleep();
        return;
    }
    if (!wanted_)
        return;
    if (inhibitor + 1 < inhibitors().size()) {
        inhibitWith(inhibitor + 1);
        return;
    }
    // Said once, not at every timer: a desktop without either service stays without it.
    if (!failureLogged_) {
        failureLogged_ = true;
        logLine("could not keep the display awake (no screen saver or power manager answered: " +
                excerptForLog(reply.error().message().toStdString()) + "); the timer runs on");
    }
}

QDBusMessage DBusSleepPreventer::unInhibitMessage(const Hold& hold) const
{
    const Inhibitor& target = inhibitors().at(hold.inhibitor);
    QDBusMessage message = QDBusMessage::createMethodCall(
        target.service, target.path, target.interface, QStringLiteral("UnInhibit"));
    message << hold.cookie;
    return message;
}

std::unique_ptr<SleepPreventer> makeSleepPreventer()
{
    return std::make_unique<DBusSleepPreventer>(QDBusConnection::sessionBus());
}

} // namespace navro
