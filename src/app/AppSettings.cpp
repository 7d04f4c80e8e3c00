#include "app/AppSettings.h"

#include "app/Log.h"
#include "app/RawValue.h"

#include <QLocale>

namespace navro {
namespace {

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

template <typename T> void logWrongType(const QString& key, const StoreRead<T>& read)
{
    if (read.state() == StoreRead<T>::State::wrongType)
        logLine(QStringLiteral("setting \"%1\" holds a value of another type; using its default")
                    .arg(key)
                    .toStdString());
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

template <typename T, typename Write>
void AppSettings::assign(T& field, const T& value, void (AppSettings::*changed)(), Write&& write)
{
    if (field == value)
        return;
    field = value;
    emit(this->*changed)();
    emit settingsChanged();
    write();
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
    store_.writeString(QStringLiteral("language"), toQString(rawValue(value)));
}

void AppSettings::setHasCompletedOnboarding(bool value)
{
    assign(hasCompletedOnboarding_, value, &AppSettings::hasCompletedOnboardingChanged,
           [&] { store_.writeBool(QStringLiteral("hasCompletedOnboarding"), value); });
}

void AppSettings::setPrayerCityID(const QString& value)
{
    assign(prayerCityID_, value, &AppSettings::prayerCityIDChanged,
           [&] { store_.writeString(QStringLiteral("prayerCityID"), value); });
}

void AppSettings::setPrayerMethod(CalculationMethod value)
{
    assign(prayerMethod_, value, &AppSettings::prayerMethodChanged,
           [&] { store_.writeString(QStringLiteral("prayerMethod"), toQString(rawValue(value))); });
}

void AppSettings::setAsrMethod(AsrMethod value)
{
    assign(asrMethod_, value, &AppSettings::asrMethodChanged,
           [&] { store_.writeString(QStringLiteral("asrMethod"), toQString(rawValue(value))); });
}

void AppSettings::setAdhanAlert(bool value)
{
    assign(adhanAlert_, value, &AppSettings::adhanAlertChanged,
           [&] { store_.writeBool(QStringLiteral("adhanAlert"), value); });
}

void AppSettings::setAdhanSound(bool value)
{
    assign(adhanSound_, value, &AppSettings::adhanSoundChanged,
           [&] { store_.writeBool(QStringLiteral("adhanSound"), value); });
}

void AppSettings::setPrayerInNotch(bool value)
{
    assign(prayerInNotch_, value, &AppSettings::prayerInNotchChanged,
           [&] { store_.writeBool(QStringLiteral("prayerInNotch"), value); });
}

void AppSettings::setMusicInNotch(bool value)
{
    assign(musicInNotch_, value, &AppSettings::musicInNotchChanged,
           [&] { store_.writeBool(QStringLiteral("musicInNotch"), value); });
}

void AppSettings::setBarsFollowSound(bool value)
{
    assign(barsFollowSound_, value, &AppSettings::barsFollowSoundChanged,
           [&] { store_.writeBool(QStringLiteral("barsFollowSound"), value); });
}

void AppSettings::setCalendarInNotch(bool value)
{
    assign(calendarInNotch_, value, &AppSettings::calendarInNotchChanged,
           [&] { store_.writeBool(QStringLiteral("calendarInNotch"), value); });
}

void AppSettings::setTransfersInNotch(bool value)
{
    assign(transfersInNotch_, value, &AppSettings::transfersInNotchChanged,
           [&] { store_.writeBool(QStringLiteral("transfersInNotch"), value); });
}

void AppSettings::setDevicesInNotch(bool value)
{
    assign(devicesInNotch_, value, &AppSettings::devicesInNotchChanged,
           [&] { store_.writeBool(QStringLiteral("devicesInNotch"), value); });
}

void AppSettings::setTimerKeepAwake(bool value)
{
    assign(timerKeepAwake_, value, &AppSettings::timerKeepAwakeChanged,
           [&] { store_.writeBool(QStringLiteral("timerKeepAwake"), value); });
}

void AppSettings::setCaptureCopy(bool value)
{
    assign(captureCopy_, value, &AppSettings::captureCopyChanged,
           [&] { store_.writeBool(QStringLiteral("captureCopy"), value); });
}

void AppSettings::setCaptureMicrophone(bool value)
{
    assign(captureMicrophone_, value, &AppSettings::captureMicrophoneChanged,
           [&] { store_.writeBool(QStringLiteral("captureMicrophone"), value); });
}

void AppSettings::setCaptureShowClicks(bool value)
{
    assign(captureShowClicks_, value, &AppSettings::captureShowClicksChanged,
           [&] { store_.writeBool(QStringLiteral("captureShowClicks"), value); });
}

void AppSettings::setTimerSound(bool value)
{
    assign(timerSound_, value, &AppSettings::timerSoundChanged,
           [&] { store_.writeBool(QStringLiteral("timerSound"), value); });
}

void AppSettings::setFocusShortcutOn(const QString& value)
{
    assign(focusShortcutOn_, value, &AppSettings::focusShortcutOnChanged,
           [&] { store_.writeString(QStringLiteral("focusShortcutOn"), value); });
}

void AppSettings::setFocusShortcutOff(const QString& value)
{
    assign(focusShortcutOff_, value, &AppSettings::focusShortcutOffChanged,
           [&] { store_.writeString(QStringLiteral("focusShortcutOff"), value); });
}

void AppSettings::setLastTimerMinutes(double value)
{
    assign(lastTimerMinutes_, value, &AppSettings::lastTimerMinutesChanged,
           [&] { store_.writeDouble(QStringLiteral("lastTimerMinutes"), value); });
}

void AppSettings::setAutoUpdate(bool value)
{
    assign(autoUpdate_, value, &AppSettings::autoUpdateChanged,
           [&] { store_.writeBool(QStringLiteral("autoUpdate"), value); });
}

void AppSettings::setShareUsageStats(bool value)
{
    assign(shareUsageStats_, value, &AppSettings::shareUsageStatsChanged,
           [&] { store_.writeBool(QStringLiteral("shareUsageStats"), value); });
}

void AppSettings::setClipboardEnabled(bool value)
{
    assign(clipboardEnabled_, value, &AppSettings::clipboardEnabledChanged,
           [&] { store_.writeBool(QStringLiteral("clipboardEnabled"), value); });
}

void AppSettings::setClipboardLimit(int value)
{
    assign(clipboardLimit_, value, &AppSettings::clipboardLimitChanged,
           [&] { store_.writeInt(QStringLiteral("clipboardLimit"), value); });
}

void AppSettings::setNotchEnabled(bool value)
{
    assign(notchEnabled_, value, &AppSettings::notchEnabledChanged,
           [&] { store_.writeBool(QStringLiteral("notchEnabled"), value); });
}

void AppSettings::setTheme(AppTheme value)
{
    assign(theme_, value, &AppSettings::themeChanged,
           [&] { store_.writeString(QStringLiteral("theme"), toQString(rawValue(value))); });
}

void AppSettings::setSettingsPage(SettingsPage value)
{
    assign(settingsPage_, value, &AppSettings::settingsPageChanged, [] {});
}

void AppSettings::setOpenMode(OpenMode value)
{
    assign(openMode_, value, &AppSettings::openModeChanged,
           [&] { store_.writeString(QStringLiteral("openMode"), toQString(rawValue(value))); });
}

void AppSettings::setHoverDelay(double value)
{
    assign(hoverDelay_, value, &AppSettings::hoverDelayChanged,
           [&] { store_.writeDouble(QStringLiteral("hoverDelay"), value); });
}

QString AppSettings::prayerMethodRaw() const
{
    return toQString(rawValue(prayerMethod_));
}

void AppSettings::setPrayerMethodRaw(const QString& raw)
{
    if (auto value = calculationMethodFromRaw(raw.toStdString()))
        setPrayerMethod(*value);
    else
        logRejected(QStringLiteral("prayerMethod"), raw);
}

QString AppSettings::asrMethodRaw() const
{
    return toQString(rawValue(asrMethod_));
}

void AppSettings::setAsrMethodRaw(const QString& raw)
{
    if (auto value = asrMethodFromRaw(raw.toStdString()))
        setAsrMethod(*value);
    else
        logRejected(QStringLiteral("asrMethod"), raw);
}

QString AppSettings::themeRaw() const
{
    return toQString(rawValue(theme_));
}

void AppSettings::setThemeRaw(const QString& raw)
{
    if (auto value = appThemeFromRaw(raw.toStdString()))
        setTheme(*value);
    else
        logRejected(QStringLiteral("theme"), raw);
}

QString AppSettings::settingsPageRaw() const
{
    return toQString(rawValue(settingsPage_));
}

void AppSettings::setSettingsPageRaw(const QString& raw)
{
    if (auto value = settingsPageFromRaw(raw.toStdString()))
        setSettingsPage(*value);
    else
        logRejected(QStringLiteral("settingsPage"), raw);
}

QString AppSettings::openModeRaw() const
{
    return toQString(rawValue(openMode_));
}

void AppSettings::setOpenModeRaw(const QString& raw)
{
    if (auto value = openModeFromRaw(raw.toStdString()))
        setOpenMode(*value);
    else
        logRejected(QStringLiteral("openMode"), raw);
}

QString AppSettings::languageRaw() const
{
    return toQString(rawValue(language_));
}

void AppSettings::setLanguageRaw(const QString& raw)
{
    if (auto value = appLanguageFromRaw(raw.toStdString()))
        setLanguage(*value);
    else
        logRejected(QStringLiteral("language"), raw);
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
    logLine(QStringLiteral("setting \"%1\" has no choice \"%2\"; keeping the default or current "
                           "value")
                .arg(key, raw)
                .toStdString());
}

} // namespace navro
