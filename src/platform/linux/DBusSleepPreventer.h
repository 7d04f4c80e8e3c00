#pragma once

#include "data/SleepPreventer.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QObject>
#include <QString>
#include <optional>
#include <vector>

class QDBusPendingCallWatcher;

namespace navro {

// Keeps the display awake through the desktop's org.freedesktop.ScreenSaver, or where that is
// missing through org.freedesktop.PowerManagement.Inhibit. Every call is asynchronous; what
// arrives after the caller changed its mind is undone (a hold granted after allowSleep is given
// back at once). Destruction gives back a hold before it returns, waiting a bounded time, so
// that a process on its way out does not leave the display awake.
class DBusSleepPreventer final : public QObject, public SleepPreventer {
    Q_OBJECT

public:
    struct Inhibitor {
        QString service;
        QString path;
        QString interface;
    };
    // In the order tried.
    static const std::vector<Inhibitor>& inhibitors();

    explicit DBusSleepPreventer(QDBusConnection connection, QObject* parent = nullptr);
    ~DBusSleepPreventer() override;

    void keepAwake() override;
    void allowSleep() override;

    // A hold granted and not yet given back.
    bool isHolding() const { return cookie_.has_value(); }
    // Asking for a hold, no answer yet.
    bool isAsking() const { return inhibiting_ != nullptr; }

private:
    struct Hold {
        std::size_t inhibitor;
        uint cookie;
    };

    void inhibitWith(std::size_t inhibitor);
    void onInhibitReply(std::size_t inhibitor, const QDBusPendingCall& call);
    QDBusMessage unInhibitMessage(const Hold& hold) const;

    QDBusConnection connection_;
    bool wanted_ = false;
    std::optional<Hold> cookie_;
    QDBusPendingCallWatcher* inhibiting_ = nullptr;
    std::size_t inhibitingWith_ = 0;
    std::vector<QDBusPendingCall> releases_;
    bool failureLogged_ = false;
};

} // namespace navro
