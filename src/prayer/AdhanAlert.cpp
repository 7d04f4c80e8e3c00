#include "prayer/AdhanAlert.h"

#include "app/AppSettings.h"
#include "app/DesktopNotifier.h"
#include "app/SoundPlayer.h"

namespace navro {

AdhanAlert::AdhanAlert(PrayerService& prayer, const AppSettings& settings, Clock& clock,
                       DesktopNotifier& notifier, SoundPlayer& sound, ShowToast showToast,
                       QObject* parent)
    : QObject(parent), prayer_(prayer), settings_(settings), clock_(clock), notifier_(notifier),
      sound_(sound), showToast_(std::move(showToast)), awaited_(prayer.upcoming()),
      awaitedCity_(prayer.city().id)
{
    connect(&prayer_, &PrayerService::nextPrayerChanged, this, &AdhanAlert::onNextPrayerChanged);
}

void AdhanAlert::onNextPrayerChanged()
{
    const auto left = awaited_;
    const bool sameCity = awaitedCity_ == prayer_.city().id;
    awaited_ = prayer_.upcoming();
    awaitedCity_ = prayer_.city().id;
    if (!left || !sameCity || left == awaited_ || left->prayer == Prayer::sunrise)
        return;
    const auto now = clock_.now();
    if (now >= left->at && now - left->at <= maxLateness)
        call(left->prayer);
}

void AdhanAlert::call(Prayer prayer)
{
    const bool arabic = settings_.isArabic();
    const auto name = title(prayer);
    const std::string heading = arabic ? std::string("حان الآن وقت صلاة ").append(name.arabic)
                                       : std::string("Time for ").append(name.english);
    const std::string city = arabic ? prayer_.city().arabic : prayer_.city().english;
    if (settings_.adhanAlert()) {
        // One key for all five: a call still on screen is replaced by the next one.
        notifier_.show({"adhan", heading, city, {}}, {});
        if (settings_.adhanSound())
            sound_.playEvent("alarm-clock-elapsed", heading);
    }
    if (settings_.prayerInNotch() && showToast_)
        showToast_(heading, city, toastSeconds);
}

} // namespace navro
