#pragma once

#include <QString>
#include <memory>

namespace navro {

// What another process can read about the running Navro.
struct RemoteState {
    QString status = QStringLiteral("closed"); // "open" or "closed"
    QString selectedTab = QStringLiteral("home");
    QString activityKind; // "" when the closed notch shows no activity
    bool notchEnabled = true;
    bool panelVisible = false;                    // the notch window is on screen
    QString language = QStringLiteral("english"); // what is shown: "english" or "arabic"

    bool operator==(const RemoteState&) const = default;
};

// The operations another process may ask of the running Navro; implemented by the application's
// composition root. Every call arrives on the main thread.
class RemoteControl {
public:
    virtual ~RemoteControl() = default;
    virtual void open(bool focus) = 0;
    virtual void close() = 0;
    virtual void toggle() = 0;
    virtual void showOnboarding() = 0;
    virtual void openSettings(const QString& page) = 0; // "general", "prayer" or "about"
    // Opens the notch with keyboard focus on the tab with that id ("clipboard" …). False, and
    // nothing changes, when no tab has that id.
    virtual bool openTab(const QString& tab) = 0;
    virtual RemoteState remoteState() const = 0;
};

// Publishes a RemoteControl to other processes for as long as it lives.
class RemoteControlPublisher {
public:
    virtual ~RemoteControlPublisher() = default;
    // The owner calls this after anything in RemoteState may have changed; the publisher reads
    // remoteState() again and tells listeners only when it really differs.
    virtual void stateChanged() = 0;
};

// For main(), before anything else is built: when another Navro already runs for this user, asks
// it to open its notch with keyboard focus and returns true (this process should then exit 0).
// Defined by the platform library.
bool handOverToRunningInstance();

// Publishes `target` (which must outlive the result). Returns nullptr when that is impossible
// (no session bus: one log line, Navro runs on without it). Defined by the platform library.
std::unique_ptr<RemoteControlPublisher> publishRemoteControl(RemoteControl& target);

} // namespace navro
