#pragma once

#include "app/DesktopNotifier.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <map>
#include <optional>

class QDBusPendingCallWatcher;

namespace navro {

// Desktop notifications through the session's notification daemon (org.freedesktop.Notifications).
//
// Nothing here waits for the daemon: every call is answered later. The daemon names what it
// shows by numbers of its own, so a key is sent as the number of the notification it replaces;
// a show or a withdrawal that arrives while the daemon has not yet said which number it gave is
// carried out once it has. Buttons go only to a daemon that lists "actions" among its
// capabilities, and the body is escaped for one that reads markup.
class FreedesktopNotifier final : public QObject, public DesktopNotifier {
    Q_OBJECT

public:
    explicit FreedesktopNotifier(QDBusConnection connection, QObject* parent = nullptr);
    ~FreedesktopNotifier() override;

    void show(const DesktopNotification& notification, ActionHandler onAction) override;
    void withdraw(const std::string& key) override;

private slots:
    void onActionInvoked(uint id, const QString& action);
    void onNotificationClosed(uint id, uint reason);

private:
    struct Entry {
        uint serverID = 0; // 0 until the daemon has answered
        bool awaitingReply = false;
        bool withdrawn = false;                    // close it as soon as its number is known
        std::optional<DesktopNotification> unsent; // the latest content, not sent yet
        ActionHandler onAction;
    };

    void askCapabilities();
    void sendUnsent();
    void send(const std::string& key, Entry& entry);
    void closeOnDaemon(uint serverID);
    void daemonUnavailable(const QString& reason);
    void daemonAnswered();
    std::map<std::string, Entry>::iterator entryFor(uint serverID);

    QDBusConnection connection_;
    QDBusServiceWatcher watcher_;
    std::optional<QStringList> capabilities_;
    bool askingCapabilities_ = false;
    bool reportedUnavailable_ = false;
    std::map<std::string, Entry> entries_;
};

} // namespace navro
