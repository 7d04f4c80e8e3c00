#include "app/AppSettings.h"

#include "app/Log.h"
#include "app/QtText.h"
#include "app/RawValue.h"

#include <QLocale>

namespace navro {
namespace {

template <typename T> void logWrongType(const QString& key, const StoreRead<T>& read)
{
    if (read.state() != StoreRead<T>::State::wrongType)
        return;
    const std::string stored = read.stored().isEmpty()
                                   ? ""
                                   : " \"" + excerptForLog(read.stored().toStdString(), 80) + "\",";
    logLine("setting \"" + key.toStdString() + "\" holds" + stored +
            " a value of another type; using its default");
}

} // namespace

AppSettings::AppSettings(SettingsStore& store, std::function<QStringList()> preferredLanguages,
                         QObject* parent)
    : QObject(parent), store_(store)
{
    const QStringList preferred = preferredLanguages ? preferredLanguages() : QStringList();
    systemPrefersArabic_ =
        !preferred.isEmpty() && preferred.front().startsWith(QLatin1String("ar"));

    hasCompletedOnboarding_ = loadPlainBool(QStringLiteral("hasCompletedOnboarding"));
    prayerCityID_ = loadString(QStringLiteral("prayerCityID"), prayerCityID_);
    prayerMethod_ = loadEnum(QStringLiteral("prayerMethod"), allCalculationMethods);
    asrMethod_ = loadExactEnum(QStringLiteral("asrMethod"), asrMethod_, AsrMethod::hanafi);
    adhanAlert_ = loadBool(QStringLiteral("adhanAlert"), adhanAlert_);
    adhanSound_ = loadBool(QStringLiteral("adhanSound"), adhanSound_);
    prayerInNotch_ = loadBool(QStringLiteral("prayerInNotch"), prayerInNotch_);
    musicInNotch_ = loadBool(QStringLiteral("musicInNotch"), musicInNotch_);
    barsFollowSound_ = loadBool(QStringLiteral("barsFollowSound"), barsFollowSound_);
    calendarInNotch_ = loadBool(QStringLiteral("calendarInNotch"), calendarInNotch_);
    transfersInNotch_ = loadBool(QStringLiteral("transfersInNotch"), transfersInNotch_);
    devicesInNotch_ = loadBool(QStringLiteral("devicesInNotch"), devicesInNotch_);
    timerKeepAwake_ = loadBool(QStringLiteral("timerKeepAwake"), timerKeepAwake_);
    captureCopy_ = loadBool(QStringLiteral("captureCopy"), captureCopy_);
    captureMicrophone_ = loadBool(QStringLiteral("captureMicrophone"), captureMicrophone_);
    captureShowClicks_ = loadBool(QStringLiteral("captureShowClicks"), captureShowClicks_);
    timerSound_ = loadBool(QStringLiteral("timerSound"), timerSound_);
    focusShortcutOn_ = loadString(QStringLiteral("focusShortcutOn"), focusShortcutOn_);
    calendarSources_ = loadString(QStringLiteral("calendarSources"), calendarSources_);
    focusShortcutOff_ = loadString(QStringLiteral("focusShortcutOff"), focusShortcutOff_);
    lastTimerMinutes_ = loadDouble(QStringLiteral("lastTimerMinutes"), lastTimerMinutes_);
    autoUpdate_ = loadBool(QStringLiteral("autoUpdate"), autoUpdate_);
    shareUsageStats_ = loadBool(QStringLiteral("shareUsageStats"), shareUsageStats_);
    clipboardEnabled_ = loadBool(QStringLiteral("clipboardEnabled"), clipboardEnabled_);
    clipboardLimit_ = loadInt(QStringLiteral("clipboardLimit"), clipboardLimit_);
    notchEnabled_ = loadBool(QStringLiteral("notchEnabled"), notchEnabled_);
    theme_ = loadEnum(QStringLiteral("theme"), allAppThemes);
    // settingsPage is never stored: the settings window opens on general after every launch.
    openMode_ = loadExactEnum(QStringLiteral("openMode"), openMode_, OpenMode::click);
    hoverDelay_ = loadDouble(QStringLiteral("hoverDelay"), hoverDelay_);
    language_ = loadEnum(QStringLiteral("language"), allAppLanguages);
    lastSeenVersion_ = loadString(QStringLiteral("lastSeenVersion"), lastSeenVersion_);
    lastUpdateCheck_ = loadDouble(QStringLiteral("lastUpdateCheck"), lastUpdateCheck_);
}

QStringList AppSettings::systemPreferredLanguages()
{
    return QLocale::system().uiLanguages();
}

bool AppSettings::isArabic() const
{
    switch (language_) {
    case AppLanguage::arabic:
        return true;
    case AppLanguage::english:
        return false;
    case AppLanguage::system:
        return systemPrefersArabic_;
    }
    return false;
}

template <typename T>
void AppSettings::assign(T& field, const T& value, void (AppSettings::*changed)(),
                         const std::optional<QString>& key)
{
    if (field == value)
        return;
    // Observers see the new value before it reaches the store.
    field = value;
    emit(this->*changed)();
    emit settingsChanged();
    if (key)
        store(*key, value);
}

template <typename Enum, std::size_t N>
void AppSettings::setFromRaw(const QString& raw, const std::array<Enum, N>& allCases,
                             void (AppSettings::*set)(Enum), const QString& key)
{
    if (auto value = fromRaw(allCases, raw.toStdString()))
        (this->*set)(*value);
    else
        logRejected(key, raw);
}

void AppSettings::store(const QString& key, bool value)
{
    store_.writeBool(key, value);
}

void AppSettings::store(const QString& key, int value)
{
    store_.writeInt(key, value);
}

void AppSettings::store(const QString& key, double value)
{
    store_.writeDouble(key, value);
}

void AppSettings::store(const QString& key, const QString& value)
{
    store_.writeString(key, value);
}

void AppSettings::setLanguage(AppLanguage value)
{
    if (language_ == value)
        return;
    const bool wasArabic = isArabic();
    language_ = value;
    emit languageChanged();
    if (isArabic() != wasArabic)
        emit isArabicChanged();
    emit settingsChanged();
    store(QStringLiteral("language"), value);
}

void AppSettings::setHasCompletedOnboarding(bool value)
{
    assign(hasCompletedOnboarding_, value, &AppSettings::hasCompletedOnboardingChanged,
           QStringLiteral("hasCompletedOnboarding"));
}

void AppSettings::setPrayerCityID(const QString& value)
{
    assign(prayerCityID_, value, &AppSettings::prayerCityIDChanged, QStringLiteral("prayerCityID"));
}

void AppSettings::setPrayerMethod(CalculationMethod value)
{
    assign(prayerMethod_, value, &AppSettings::prayerMethodChanged, QStringLiteral("prayerMethod"));
}

void AppSettings::setAsrMethod(AsrMethod value)
{
    assign(asrMethod_, value, &AppSettings::asrMethodChanged, QStringLiteral("asrMethod"));
}

void AppSettings::setAdhanAlert(bool value)
{
    assign(adhanAlert_, value, &AppSettings::adhanAlertChanged, QStringLiteral("adhanAlert"));
}

void AppSettings::setAdhanSound(bool value)
{
    assign(adhanSound_, value, &AppSettings::adhanSoundChanged, QStringLiteral("adhanSound"));
}

void AppSettings::setPrayerInNotch(bool value)
{
    assign(prayerInNotch_, value, &AppSettings::prayerInNotchChanged,
           QStringLiteral("prayerInNotch"));
}

void AppSettings::setMusicInNotch(bool value)
{
    assign(musicInNotch_, value, &AppSettings::musicInNotchChanged, QStringLiteral("musicInNotch"));
}

void AppSettings::setBarsFollowSound(bool value)
{
    assign(barsFollowSound_, value, &AppSettings::barsFollowSoundChanged,
           QStringLiteral("barsFollowSound"));
}

void AppSettings::setCalendarInNotch(bool value)
{
    assign(calendarInNotch_, value, &AppSettings::calendarInNotchChanged,
           QStringLiteral("calendarInNotch"));
}

void AppSettings::setTransfersInNotch(bool value)
{
    assign(transfersInNotch_, value, &AppSettings::transfersInNotchChanged,
           QStringLiteral("transfersInNotch"));
}

void AppSettings::setDevicesInNotch(bool value)
{
    assign(devicesInNotch_, value, &AppSettings::devicesInNotchChanged,
           QStringLiteral("devicesInNotch"));
}

void AppSettings::setTimerKeepAwake(bool value)
{
    assign(timerKeepAwake_, value, &AppSettings::timerKeepAwakeChanged,
           QStringLiteral("timerKeepAwake"));
}

void AppSettings::setCaptureCopy(bool value)
{
    assign(captureCopy_, value, &AppSettings::captureCopyChanged, QStringLiteral("captureCopy"));
}

void AppSettings::setCaptureMicrophone(bool value)
{
    assign(captureMicrophone_, value, &AppSettings::captureMicrophoneChanged,
           QStringLiteral("captureMicrophone"));
}

void AppSettings::setCaptureShowClicks(bool value)
{
    assign(captureShowClicks_, value, &AppSettings::captureShowClicksChanged,
           QStringLiteral("captureShowClicks"));
}

void AppSettings::setTimerSound(bool value)
{
    assign(timerSound_, value, &AppSettings::timerSoundChanged, QStringLiteral("timerSound"));
}

void AppSettings::setCalendarSources(const QString& value)
{
    assign(calendarSources_, value, &AppSettings::calendarSourcesChanged,
           QStringLiteral("calendarSources"));
}

void AppSettings::setFocusShortcutOn(const QString& value)
{
    assign(focusShortcutOn_, value, &AppSettings::focusShortcutOnChanged,
           QStringLiteral("focusShortcutOn"));
}

void AppSettings::setFocusShortcutOff(const QString& value)
{
    assign(focusShortcutOff_, value, &AppSettings::focusShortcutOffChanged,
           QStringLiteral("focusShortcutOff"));
}

void AppSettings::setLastSeenVersion(const QString& value)
{
    assign(lastSeenVersion_, value, &AppSettings::lastSeenVersionChanged,
           QStringLiteral("lastSeenVersion"));
}

void AppSettings::setLastUpdateCheck(double value)
{
    assign(lastUpdateCheck_, value, &AppSettings::lastUpdateCheckChanged,
           QStringLiteral("lastUpdateCheck"));
}

void AppSettings::setLastTimerMinutes(double value)
{
    assign(lastTimerMinutes_, value, &AppSettings::lastTimerMinutesChanged,
           QStringLiteral("lastTimerMinutes"));
}

void AppSettings::setAutoUpdate(bool value)
{
    assign(autoUpdate_, value, &AppSettings::autoUpdateChanged, QStringLiteral("autoUpdate"));
}

void AppSettings::setShareUsageStats(bool value)
{
    assign(shareUsageStats_, value, &AppSettings::shareUsageStatsChanged,
           QStringLiteral("shareUsageStats"));
}

void AppSettings::setClipboardEnabled(bool value)
{
    assign(clipboardEnabled_, value, &AppSettings::clipboardEnabledChanged,
           QStringLiteral("clipboardEnabled"));
}

void AppSettings::setClipboardLimit(int value)
{
    assign(clipboardLimit_, value, &AppSettings::clipboardLimitChanged,
           QStringLiteral("clipboardLimit"));
}

void AppSettings::setNotchEnabled(bool value)
{
    assign(notchEnabled_, value, &AppSettings::notchEnabledChanged, QStringLiteral("notchEnabled"));
}

void AppSettings::setTheme(AppTheme value)
{
    assign(theme_, value, &AppSettings::themeChanged, QStringLiteral("theme"));
}

void AppSettings::setSettingsPage(SettingsPage value)
{
    assign(settingsPage_, value, &AppSettings::settingsPageChanged, std::nullopt);
}

void AppSettings::setOpenMode(OpenMode value)
{
    assign(openMode_, value, &AppSettings::openModeChanged, QStringLiteral("openMode"));
}

void AppSettings::setHoverDelay(double value)
{
    assign(hoverDelay_, value, &AppSettings::hoverDelayChanged, QStringLiteral("hoverDelay"));
}

QString AppSettings::prayerMethodRaw() const
{
    return toQString(rawValue(prayerMethod_));
}

void AppSettings::setPrayerMethodRaw(const QString& raw)
{
    setFromRaw(raw, allCalculationMethods, &AppSettings::setPrayerMethod,
               QStringLiteral("prayerMethod"));
}

QString AppSettings::asrMethodRaw() const
{
    return toQString(rawValue(asrMethod_));
}

void AppSettings::setAsrMethodRaw(const QString& raw)
{
    setFromRaw(raw, allAsrMethods, &AppSettings::setAsrMethod, QStringLiteral("asrMethod"));
}

QString AppSettings::themeRaw() const
{
    return toQString(rawValue(theme_));
}

void AppSettings::setThemeRaw(const QString& raw)
{
    setFromRaw(raw, allAppThemes, &AppSettings::setTheme, QStringLiteral("theme"));
}

QString AppSettings::settingsPageRaw() const
{
    return toQString(rawValue(settingsPage_));
}

void AppSettings::setSettingsPageRaw(const QString& raw)
{
    setFromRaw(raw, allSettingsPages, &AppSettings::setSettingsPage,
               QStringLiteral("settingsPage"));
}

QString AppSettings::openModeRaw() const
{
    return toQString(rawValue(openMode_));
}

void AppSettings::setOpenModeRaw(const QString& raw)
{
    setFromRaw(raw, allOpenModes, &AppSettings::setOpenMode, QStringLiteral("openMode"));
}

QString AppSettings::languageRaw() const
{
    return toQString(rawValue(language_));
}

void AppSettings::setLanguageRaw(const QString& raw)
{
    setFromRaw(raw, allAppLanguages, &AppSettings::setLanguage, QStringLiteral("language"));
}

bool AppSettings::loadPlainBool(const QString& key) const
{
    // Read like a plain bool getter: anything but a stored true is false.
    const auto read = store_.readBool(key);
    logWrongType(key, read);
    return read.valueOr(false);
}

bool AppSettings::loadBool(const QString& key, bool fallback) const
{
    const auto read = store_.readBool(key);
    logWrongType(key, read);
    return read.valueOr(fallback);
}

int AppSettings::loadInt(const QString& key, int fallback) const
{
    const auto read = store_.readInt(key);
    logWrongType(key, read);
    return read.valueOr(fallback);
}

double AppSettings::loadDouble(const QString& key, double fallback) const
{
    const auto read = store_.readDouble(key);
    logWrongType(key, read);
    return read.valueOr(fallback);
}

QString AppSettings::loadString(const QString& key, const QString& fallback) const
{
    const auto read = store_.readString(key);
    logWrongType(key, read);
    return read.valueOr(fallback);
}

template <typename Enum, std::size_t N>
Enum AppSettings::loadEnum(const QString& key, const std::array<Enum, N>& allCases) const
{
    // Missing or unknown text gives the first case.
    const auto read = store_.readString(key);
    logWrongType(key, read);
    if (!read.hasValue())
        return allCases.front();
    if (auto value = fromRaw(allCases, read.value().toStdString()))
        return *value;
    logRejected(key, read.value());
    return allCases.front();
}

template <typename Enum>
Enum AppSettings::loadExactEnum(const QString& key, Enum fallback, Enum onlyChoice) const
{
    // Only the exact raw text of the one other choice selects it; anything else, a different
    // spelling included, is the default.
    const auto read = store_.readString(key);
    logWrongType(key, read);
    if (!read.hasValue())
        return fallback;
    if (read.value() == toQString(rawValue(onlyChoice)))
        return onlyChoice;
    if (read.value() != toQString(rawValue(fallback)))
        logRejected(key, read.value());
    return fallback;
}

void AppSettings::logRejected(const QString& key, const QString& raw) const
{
    logLine("setting \"" + key.toStdString() + "\" has no choice \"" +
            excerptForLog(raw.toStdString(), 80) + "\"; keeping the default or current value");
}

} // namespace navro
