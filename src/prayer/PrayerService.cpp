#include "prayer/PrayerService.h"

#include "app/AppSettings.h"
#include "app/Log.h"
#include "app/QtText.h"

#include <QTimeZone>
#include <QVariantMap>
#include <algorithm>

namespace navro {
namespace {

using namespace std::chrono;

sys_seconds wholeSeconds(WallTime time)
{
    return std::chrono::floor<std::chrono::seconds>(time);
}

QDateTime toDateTime(sys_seconds instant)
{
    return QDateTime::fromSecsSinceEpoch(instant.time_since_epoch().count());
}

} // namespace

PrayerService::PrayerService(AppSettings& settings, Clock& clock, SystemTimeEvents& events,
                             QObject* parent)
    : QObject(parent), settings_(settings), clock_(clock), events_(events), wake_(clock.makeSlot())
{
    auto settingChanged = [this] {
        if (!choosingCity_)
            rebuild();
    };
    connect(&settings_, &AppSettings::prayerCityIDChanged, this, settingChanged);
    connect(&settings_, &AppSettings::prayerMethodChanged, this, settingChanged);
    connect(&settings_, &AppSettings::asrMethodChanged, this, settingChanged);
    eventsHandler_ =
        events_.addHandler([this](SystemTimeEvents::Event event) { onSystemTimeEvent(event); });
    rebuild();
}

PrayerService::~PrayerService()
{
    events_.removeHandler(eventsHandler_);
}

void PrayerService::rebuild(bool forceNotify)
{
    const std::string storedID = settings_.prayerCityID().toStdString();
    PrayerCity city = resolveCity(storedID);
    if (city.id != storedID && storedID != lastUnknownCityID_) {
        logLine("unknown prayer city \"" + storedID + "\"; showing Manama");
        lastUnknownCityID_ = storedID;
    }
    const bool cityMoved = city != city_;
    city_ = std::move(city);

    // The Ramadan rule reads the Hijri month in the machine's zone, which can change while we run.
    const std::string machineZone = events_.systemTimeZoneID();
    calculator_.emplace(city_.latitude, city_.longitude, city_.timeZoneID, settings_.prayerMethod(),
                        settings_.asrMethod(),
                        machineZone.empty() ? std::nullopt : std::optional(machineZone));
    for (const auto& warning : calculator_->warnings())
        logLine(warning);

    if (cityMoved)
        emit cityChanged();
    refresh(forceNotify, cityMoved);
}

std::optional<PrayerService::Upcoming> PrayerService::findUpcoming(sys_seconds now) const
{
    std::optional<Upcoming> best;
    // Sunrise ends Fajr's time rather than calling to a prayer, so it is never "next": after
    // Fajr the next prayer is Dhuhr.
    auto consider = [&](const std::map<Prayer, sys_seconds>& times) {
        for (const auto& [prayer, at] : times)
            if (prayer != Prayer::sunrise && at > now && (!best || at < best->at))
                best = Upcoming{prayer, at};
    };
    consider(today_);
    // After the day's last prayer the next one is the following day's; a day without any the
    // sun reaches (far north) gets one more day's look.
    sys_seconds from = now;
    for (int day = 0; day < 2 && !best; ++day) {
        const auto start = calculator_->nextDayStart(from);
        if (!start)
            break;
        consider(calculator_->times(*start));
        from = *start;
    }
    return best;
}

void PrayerService::refresh(bool forceNotify, bool alreadyChanged)
{
    const WallTime now = clock_.now();
    const sys_seconds nowSeconds = wholeSeconds(now);

    auto today = calculator_->times(nowSeconds);
    const bool timesMoved = today != today_;
    today_ = std::move(today);
    const auto upcoming = findUpcoming(nowSeconds);
    const bool nextMoved = upcoming != upcoming_;
    upcoming_ = upcoming;

    const QString countdown =
        upcoming_ ? countdownFor(duration_cast<milliseconds>(upcoming_->at - now)) : QString();
    if (countdown != countdownText_) {
        countdownText_ = countdown;
        emit countdownTextChanged();
    }
    if (timesMoved || forceNotify)
        emit timesChanged();
    if (nextMoved || forceNotify)
        emit nextPrayerChanged();
    if (timesMoved || nextMoved || forceNotify || alreadyChanged)
        emit prayerChanged();
    scheduleWake(now);
}

void PrayerService::scheduleWake(WallTime now)
{
    std::optional<WallTime> target;
    auto consider = [&](WallTime at) {
        if (!target || at < *target)
            target = at;
    };
    if (upcoming_) {
        consider(upcoming_->at);
        if (countdownViewers_ > 0) {
            // Tick on the instants where the whole number of seconds left changes.
            const auto remaining = duration_cast<milliseconds>(upcoming_->at - now).count() % 1000;
            consider(now + milliseconds(remaining > 0 ? remaining : 1000));
        }
    }
    if (auto midnight = calculator_->nextDayStart(wholeSeconds(now)))
        consider(*midnight);
    if (!target) {
        wake_->cancel();
        return;
    }
    wake_->schedule(std::max(*target - now, Duration::zero()), [this] { refresh(); });
}

void PrayerService::onSystemTimeEvent(SystemTimeEvents::Event event)
{
    switch (event) {
    case SystemTimeEvents::Event::clockChanged:
        refresh();
        break;
    case SystemTimeEvents::Event::resumed:
        // Asleep, no timer ran, and the machine may have woken in another zone.
        rebuild();
        break;
    case SystemTimeEvents::Event::timeZoneChanged:
        // The instants stay, but every view shows them on a different clock now.
        rebuild(true);
        break;
    }
}

QString PrayerService::countdownFor(milliseconds remaining)
{
    const long long total = remaining.count() <= 0 ? 0 : (remaining.count() + 999) / 1000;
    return QString::asprintf("%lld:%02lld:%02lld", total / 3600, total / 60 % 60, total % 60);
}

void PrayerService::watchCountdown()
{
    ++countdownViewers_;
    emit countdownViewersChanged();
    if (countdownViewers_ == 1)
        refresh();
}

void PrayerService::stopWatchingCountdown()
{
    if (countdownViewers_ == 0)
        return;
    --countdownViewers_;
    emit countdownViewersChanged();
    if (countdownViewers_ == 0)
        scheduleWake(clock_.now());
}

QString PrayerService::cityID() const
{
    return QString::fromStdString(city_.id);
}

QString PrayerService::cityEnglish() const
{
    return QString::fromStdString(city_.english);
}

QString PrayerService::cityArabic() const
{
    return QString::fromStdString(city_.arabic);
}

QVariantList PrayerService::todayTimes() const
{
    QVariantList list;
    for (const auto& [prayer, at] : today_) {
        const auto name = title(prayer);
        list.append(QVariantMap{{"prayer", toQString(rawValue(prayer))},
                                {"titleEnglish", toQString(name.english)},
                                {"titleArabic", toQString(name.arabic)},
                                {"time", toDateTime(at)},
                                {"clock", cityClock(at)}});
    }
    return list;
}

QString PrayerService::cityClock(sys_seconds instant) const
{
    // A timetable of a place reads in that place's clock, whatever zone the machine is in.
    const QTimeZone zone(QByteArray::fromStdString(city_.timeZoneID));
    const auto at = toDateTime(instant);
    return (zone.isValid() ? at.toTimeZone(zone) : at).toString(QStringLiteral("HH:mm"));
}

QString PrayerService::nextPrayerClock() const
{
    return upcoming_ ? cityClock(upcoming_->at) : QString();
}

QString PrayerService::nextPrayerRaw() const
{
    return upcoming_ ? toQString(rawValue(upcoming_->prayer)) : QString();
}

QString PrayerService::nextPrayerEnglish() const
{
    return upcoming_ ? toQString(title(upcoming_->prayer).english) : QString();
}

QString PrayerService::nextPrayerArabic() const
{
    return upcoming_ ? toQString(title(upcoming_->prayer).arabic) : QString();
}

QDateTime PrayerService::nextPrayerTime() const
{
    return upcoming_ ? toDateTime(upcoming_->at) : QDateTime();
}

QVariantList PrayerService::citiesByCountry() const
{
    const bool arabic = settings_.isArabic();
    QVariantList groups;
    QString currentCountry;
    QVariantList cities;
    auto flush = [&] {
        if (!cities.isEmpty())
            groups.append(QVariantMap{{"country", currentCountry}, {"cities", cities}});
        cities.clear();
    };
    for (const auto& city : PrayerCity::all()) {
        const QString country =
            QString::fromStdString(arabic ? city.countryArabic : city.countryEnglish);
        if (country != currentCountry) {
            flush();
            currentCountry = country;
        }
        cities.append(
            QVariantMap{{"id", QString::fromStdString(city.id)},
                        {"name", QString::fromStdString(arabic ? city.arabic : city.english)},
                        {"english", QString::fromStdString(city.english)},
                        {"arabic", QString::fromStdString(city.arabic)},
                        {"suggestedMethod", toQString(rawValue(city.suggestedMethod))}});
    }
    flush();
    return groups;
}

QVariantList PrayerService::methods() const
{
    const bool arabic = settings_.isArabic();
    QVariantList list;
    for (auto method : allCalculationMethods) {
        const auto name = title(method);
        list.append(QVariantMap{{"id", toQString(rawValue(method))},
                                {"title", toQString(name.in(arabic))},
                                {"titleEnglish", toQString(name.english)},
                                {"titleArabic", toQString(name.arabic)}});
    }
    return list;
}

void PrayerService::chooseCity(const QString& id)
{
    const auto city = PrayerCity::with(id.toStdString());
    if (!city) {
        logLine("no prayer city \"" + id.toStdString() + "\" to choose; keeping " + city_.id);
        return;
    }
    // Two settings move together; recomputing between them would publish the new city under the
    // old method for a moment.
    choosingCity_ = true;
    settings_.setPrayerCityID(id);
    settings_.setPrayerMethod(city->suggestedMethod);
    choosingCity_ = false;
    rebuild();
}

} // namespace navro
