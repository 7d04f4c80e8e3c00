#pragma once

#include "app/Clock.h"
#include "prayer/PrayerService.h"

#include <QObject>
#include <functional>
#include <optional>
#include <string>

namespace navro {

class AppSettings;
class DesktopNotifier;
class SoundPlayer;

// Calls to each of the five prayers when its time comes: a desktop notification while
// adhanAlert is on (with a sound while adhanSound is also on) and a notice on the closed notch
// while prayerInNotch is on.
//
// It rides on the prayer service's own wake-up at each prayer: when the next prayer moves on and
// the one it leaves has just come, that one is called. A prayer found more than five minutes past
// (the machine slept through it) is let go without a word.
class AdhanAlert : public QObject {
    Q_OBJECT

public:
    using ShowToast =
        std::function<void(const std::string& title, const std::string& detail, double seconds)>;

    static constexpr std::chrono::minutes maxLateness{5};
    static constexpr double toastSeconds = 60;

    AdhanAlert(PrayerService& prayer, const AppSettings& settings, Clock& clock,
               DesktopNotifier& notifier, SoundPlayer& sound, ShowToast showToast,
               QObject* parent = nullptr);

private:
    void onNextPrayerChanged();
    void call(Prayer prayer);

    PrayerService& prayer_;
    const AppSettings& settings_;
    Clock& clock_;
    DesktopNotifier& notifier_;
    SoundPlayer& sound_;
    ShowToast showToast_;
    std::optional<PrayerService::Upcoming> awaited_;
    std::string awaitedCity_;
};

} // namespace navro
