#pragma once

#include "app/Clock.h"
#include "app/SystemTimeEvents.h"
#include "prayer/PrayerCalculator.h"
#include "prayer/PrayerCity.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace navro {

class AppSettings;

// Today's prayer times for the chosen city, the next prayer and the time left until it.
//
// It sleeps until the next moment that changes what it publishes (the next prayer, or the city's
// midnight) and wakes early when the settings change or the machine's clock, time zone or sleep
// says its plan is stale. It ticks every second only while some view shows the countdown.
class PrayerService : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString cityID READ cityID NOTIFY cityChanged)
    Q_PROPERTY(QString cityEnglish READ cityEnglish NOTIFY cityChanged)
    Q_PROPERTY(QString cityArabic READ cityArabic NOTIFY cityChanged)
    // [{prayer, titleEnglish, titleArabic, time (QDateTime), clock ("HH:mm" on the city's own
    // clock)}] in the order of the day; a time the sun does not reach that day is left out.
    Q_PROPERTY(QVariantList todayTimes READ todayTimes NOTIFY timesChanged)
    // Raw value of the next prayer ("fajr" …), empty when none can be found.
    Q_PROPERTY(QString nextPrayer READ nextPrayerRaw NOTIFY nextPrayerChanged)
    Q_PROPERTY(QString nextPrayerEnglish READ nextPrayerEnglish NOTIFY nextPrayerChanged)
    Q_PROPERTY(QString nextPrayerArabic READ nextPrayerArabic NOTIFY nextPrayerChanged)
    Q_PROPERTY(QDateTime nextPrayerTime READ nextPrayerTime NOTIFY nextPrayerChanged)
    // "HH:mm" of the next prayer on the city's own clock.
    Q_PROPERTY(QString nextPrayerClock READ nextPrayerClock NOTIFY nextPrayerChanged)
    // "h:mm:ss" until the next prayer; kept to the second only while countdownViewers > 0.
    Q_PROPERTY(QString countdownText READ countdownText NOTIFY countdownTextChanged)
    Q_PROPERTY(int countdownViewers READ countdownViewers NOTIFY countdownViewersChanged)

public:
    struct Upcoming {
        Prayer prayer;
        std::chrono::sys_seconds at;
        bool operator==(const Upcoming&) const = default;
    };

    PrayerService(AppSettings& settings, Clock& clock, SystemTimeEvents& events,
                  QObject* parent = nullptr);
    ~PrayerService() override;

    const PrayerCity& city() const { return city_; }
    const std::map<Prayer, std::chrono::sys_seconds>& today() const { return today_; }
    const std::optional<Upcoming>& upcoming() const { return upcoming_; }

    QString cityID() const;
    QString cityEnglish() const;
    QString cityArabic() const;
    QVariantList todayTimes() const;
    QString nextPrayerRaw() const;
    QString nextPrayerEnglish() const;
    QString nextPrayerArabic() const;
    QDateTime nextPrayerTime() const;
    QString nextPrayerClock() const;
    QString countdownText() const { return countdownText_; }
    int countdownViewers() const { return countdownViewers_; }

    // Views that show the countdown call this when they appear and stopWatchingCountdown when
    // they go; while any does, the countdown is refreshed every second.
    Q_INVOKABLE void watchCountdown();
    Q_INVOKABLE void stopWatchingCountdown();

    // For the settings: the cities grouped by country in table order, in the current language:
    // [{country, cities: [{id, name, english, arabic, suggestedMethod}]}].
    Q_INVOKABLE QVariantList citiesByCountry() const;
    // [{id, title, titleEnglish, titleArabic}] in the order of the methods.
    Q_INVOKABLE QVariantList methods() const;
    // Stores the city and switches the calculation method to the one its authorities use.
    Q_INVOKABLE void chooseCity(const QString& id);

    // "h:mm:ss" for a remaining time, rounded up to the second; "0:00:00" when none is left.
    static QString countdownFor(std::chrono::milliseconds remaining);

signals:
    void cityChanged();
    void timesChanged();
    void nextPrayerChanged();
    void countdownTextChanged();
    void countdownViewersChanged();
    // Something a prayer observer cares about changed (the city, today's times, the next
    // prayer); the activity centre re-evaluates on it.
    void prayerChanged();

private:
    void rebuild(bool forceNotify = false);
    void refresh(bool forceNotify = false, bool alreadyChanged = false);
    void scheduleWake(WallTime now);
    std::optional<Upcoming> findUpcoming(std::chrono::sys_seconds now) const;
    void onSystemTimeEvent(SystemTimeEvents::Event event);
    QString cityClock(std::chrono::sys_seconds instant) const;

    AppSettings& settings_;
    Clock& clock_;
    SystemTimeEvents& events_;
    int eventsHandler_ = -1;
    std::unique_ptr<TaskSlot> wake_;
    PrayerCity city_;
    std::optional<PrayerCalculator> calculator_;
    std::map<Prayer, std::chrono::sys_seconds> today_;
    std::optional<Upcoming> upcoming_;
    QString countdownText_;
    int countdownViewers_ = 0;
    std::string lastUnknownCityID_;
    bool choosingCity_ = false;
};

} // namespace navro
