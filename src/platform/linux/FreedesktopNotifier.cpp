#include "platform/linux/FreedesktopNotifier.h"

#include "app/Log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <QVariantMap>
#include <algorithm>

namespace navro {
namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString interface = QStringLiteral("org.freedesktop.Notifications");

QDBusMessage call(const QString& method)
{
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

QString fromUtf8(const std::string& text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

} // namespace

FreedesktopNotifier::FreedesktopNotifier(QDBusConnection connection, QObject* parent)
    : QObject(parent), connection_(std::move(connection)),
      watcher_(service, connection_, QDBusServiceWatcher::WatchForOwnerChange)
{
    connection_.connect(service, path, interface, QStringLiteral("ActionInvoked"), this,
                        SLOT(onActionInvoked(uint, QString)));
    connection_.connect(service, path, interface, QStringLiteral("NotificationClosed"), this,
                        SLOT(onNotificationClosed(uint, uint)));
    // Another daemon knows neither our numbers nor has the same capabilities.
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
        capabilities_.reset();
        bool anyUnsent = false;
        for (auto entry = entries_.begin(); entry != entries_.end();) {
            Entry& state = entry->second;
            if (!state.awaitingReply && !state.unsent) {
                entry = entries_.erase(entry);
                continue;
            }
            state.serverID = 0;
            anyUnsent = anyUnsent || state.unsent;
            ++entry;
        }
        if (anyUnsent)
            askCapabilities();
    });
}

FreedesktopNotifier::~FreedesktopNotifier() = default;

void FreedesktopNotifier::show(const DesktopNotification& notification, ActionHandler onAction)
{
    if (!connection_.isConnected()) {
        daemonUnavailable(QStringLiteral("no session bus"));
        return;
    }
    Entry& entry = entries_[notification.key];
    entry.withdrawn = false;
    entry.unsent = notification;
    entry.onAction = std::move(onAction);
    if (!capabilities_)
        askCapabilities();
    else if (!entry.awaitingReply)
        send(notification.key, entry);
}

void FreedesktopNotifier::withdraw(const std::string& key)
{
    const auto found = entries_.find(key);
    if (found == entries_.end())
        return;
    Entry& entry = found->second;
    if (entry.awaitingReply) {
        entry.withdrawn = true;
        entry.unsent.reset();
        entry.onAction = nullptr;
        return;
    }
    if (entry.serverID != 0)
        closeOnDaemon(entry.serverID);
    entries_.erase(found);
}

void FreedesktopNotifier::askCapabilities()
{
    if (askingCapabilities_)
        return;
    askingCapabilities_ = true;
    auto* watcher =
        new QDBusPendingCallWatcher(connection_.asyncCall(call("GetCapabilities")), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        askingCapabilities_ = false;
        const QDBusPendingReply<QStringList> reply = *w;
        if (reply.isError()) {
            daemonUnavailable(reply.error().message());
            // Nothing to show them on; a later show asks again.
            for (auto entry = entries_.begin(); entry != entries_.end();)
                entry = entry->second.awaitingReply ? std::next(entry) : entries_.erase(entry);
            return;
        }
        daemonAnswered();
        capabilities_ = reply.value();
        sendUnsent();
    });
}

void FreedesktopNotifier::sendUnsent()
{
    for (auto& [key, entry] : entries_)
        if (entry.unsent && !entry.awaitingReply)
            send(key, entry);
}

void FreedesktopNotifier::send(const std::string& key, Entry& entry)
{
    const DesktopNotification notification = std::move(*entry.unsent);
    entry.unsent.reset();
    entry.awaitingReply = true;

    QString body = fromUtf8(notification.body);
    if (capabilities_->contains(QStringLiteral("body-markup")))
        body = body.toHtmlEscaped();
    QStringList actions;
    if (capabilities_->contains(QStringLiteral("actions")))
        for (const auto& action : notification.actions)
            actions << fromUtf8(action.id) << fromUtf8(action.label);
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), QStringLiteral("navro")},
        {QStringLiteral("urgency"), QVariant::fromValue(uchar(1))},
        // The sound theme's ordinary notification sound, where the daemon plays sounds.
        {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")},
    };
    QDBusMessage message = call(QStringLiteral("Notify"));
    message << QStringLiteral("Navro") << entry.serverID << QStringLiteral("navro")
            << fromUtf8(notification.title) << body << actions << hints << -1;
    auto* watcher = new QDBusPendingCallWatcher(connection_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, key](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                const QDBusPendingReply<uint> reply = *w;
                const auto found = entries_.find(key);
                if (found == entries_.end())
                    return;
                Entry& entry = found->second;
                entry.awaitingReply = false;
                if (reply.isError()) {
                    daemonUnavailable(reply.error().message());
                    entries_.erase(found);
                    return;
                }
                daemonAnswered();
                entry.serverID = reply.value();
                if (entry.withdrawn) {
                    closeOnDaemon(entry.serverID);
                    entries_.erase(found);
                } else if (entry.unsent) {
                    // Shown again while this one was on its way.
                    if (capabilities_)
                        send(key, entry);
                    else
                        askCapabilities();
                }
            });
}

void FreedesktopNotifier::closeOnDaemon(uint serverID)
{
    QDBusMessage message = call(QStringLiteral("CloseNotification"));
    message << serverID;
    // A notification that is gone already makes the daemon answer with an error; nobody waits.
    connection_.asyncCall(message);
}

void FreedesktopNotifier::daemonUnavailable(const QString& reason)
{
    if (reportedUnavailable_)
        return;
    reportedUnavailable_ = true;
    logLine("no desktop notifications: " + excerptForLog(reason.toStdString()) +
            "; reminders are not shown");
}

void FreedesktopNotifier::daemonAnswered()
{
    reportedUnavailable_ = false;
}

std::map<std::string, FreedesktopNotifier::Entry>::iterator
FreedesktopNotifier::entryFor(uint serverID)
{
    return std::find_if(entries_.begin(), entries_.end(), [serverID](const auto& entry) {
        return entry.second.serverID == serverID && serverID != 0;
    });
}

void FreedesktopNotifier::onActionInvoked(uint id, const QString& action)
{
    const auto found = entryFor(id);
    if (found == entries_.end() || !found->second.onAction)
        return;
    // The handler may show or withdraw notifications, this one included.
    const ActionHandler handler = found->second.onAction;
    handler(action.toStdString());
}

void FreedesktopNotifier::onNotificationClosed(uint id, uint)
{
    const auto found = entryFor(id);
    if (found != entries_.end() && !found->second.awaitingReply)
        entries_.erase(found);
}

std::unique_ptr<DesktopNotifier> makeDesktopNotifier()
{
    return std::make_unique<FreedesktopNotifier>(QDBusConnection::sessionBus());
}

} // namespace navro
