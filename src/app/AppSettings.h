#pragma once

#include "app/QtText.h"
#include "app/SettingsEnums.h"
#include "app/SettingsStore.h"
#include "prayer/CalculationMethod.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <type_traits>

namespace navro {

// Every user preference, each published as a property and mirrored into the store under the key
// of the same name. A write publishes first (the change signal, then settingsChanged) and stores
// after, so observers never see the store ahead of the property.
//
// Enumeration settings have typed C++ accessors; their QML property of the same name carries the
// raw value as text.
class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasCompletedOnboarding READ hasCompletedOnboarding WRITE
                   setHasCompletedOnboarding NOTIFY hasCompletedOnboardingChanged)
    Q_PROPERTY(
        QString prayerCityID READ prayerCityID WRITE setPrayerCityID NOTIFY prayerCityIDChanged)
    Q_PROPERTY(QString prayerMethod READ prayerMethodRaw WRITE setPrayerMethodRaw NOTIFY
                   prayerMethodChanged)
    Q_PROPERTY(QString asrMethod READ asrMethodRaw WRITE setAsrMethodRaw NOTIFY asrMethodChanged)
    Q_PROPERTY(bool adhanAlert READ adhanAlert WRITE setAdhanAlert NOTIFY adhanAlertChanged)
    Q_PROPERTY(bool adhanSound READ adhanSound WRITE setAdhanSound NOTIFY adhanSoundChanged)
    Q_PROPERTY(
        bool prayerInNotch READ prayerInNotch WRITE setPrayerInNotch NOTIFY prayerInNotchChanged)
    Q_PROPERTY(bool musicInNotch READ musicInNotch WRITE setMusicInNotch NOTIFY musicInNotchChanged)
    Q_PROPERTY(bool barsFollowSound READ barsFollowSound WRITE setBarsFollowSound NOTIFY
                   barsFollowSoundChanged)
    Q_PROPERTY(bool calendarInNotch READ calendarInNotch WRITE setCalendarInNotch NOTIFY
                   calendarInNotchChanged)
    Q_PROPERTY(bool transfersInNotch READ transfersInNotch WRITE setTransfersInNotch NOTIFY
                   transfersInNotchChanged)
    Q_PROPERTY(bool devicesInNotch READ devicesInNotch WRITE setDevicesInNotch NOTIFY
                   devicesInNotchChanged)
    Q_PROPERTY(bool timerKeepAwake READ timerKeepAwake WRITE setTimerKeepAwake NOTIFY
                   timerKeepAwakeChanged)
    Q_PROPERTY(bool captureCopy READ captureCopy WRITE setCaptureCopy NOTIFY captureCopyChanged)
    Q_PROPERTY(bool captureMicrophone READ captureMicrophone WRITE setCaptureMicrophone NOTIFY
                   captureMicrophoneChanged)
    Q_PROPERTY(bool captureShowClicks READ captureShowClicks WRITE setCaptureShowClicks NOTIFY
                   captureShowClicksChanged)
    Q_PROPERTY(bool timerSound READ timerSound WRITE setTimerSound NOTIFY timerSoundChanged)
    Q_PROPERTY(QString focusShortcutOn READ focusShortcutOn WRITE setFocusShortcutOn NOTIFY
                   focusShortcutOnChanged)
    Q_PROPERTY(QString focusShortcutOff READ focusShortcutOff WRITE setFocusShortcutOff NOTIFY
                   focusShortcutOffChanged)
    Q_PROPERTY(double lastTimerMinutes READ lastTimerMinutes WRITE setLastTimerMinutes NOTIFY
                   lastTimerMinutesChanged)
    Q_PROPERTY(bool autoUpdate READ autoUpdate WRITE setAutoUpdate NOTIFY autoUpdateChanged)
    Q_PROPERTY(bool shareUsageStats READ shareUsageStats WRITE setShareUsageStats NOTIFY
                   shareUsageStatsChanged)
    Q_PROPERTY(bool clipboardEnabled READ clipboardEnabled WRITE setClipboardEnabled NOTIFY
                   clipboardEnabledChanged)
    Q_PROPERTY(
        int clipboardLimit READ clipboardLimit WRITE setClipboardLimit NOTIFY clipboardLimitChanged)
    Q_PROPERTY(bool notchEnabled READ notchEnabled WRITE setNotchEnabled NOTIFY notchEnabledChanged)
    Q_PROPERTY(QString theme READ themeRaw WRITE setThemeRaw NOTIFY themeChanged)
    Q_PROPERTY(QString settingsPage READ settingsPageRaw WRITE setSettingsPageRaw NOTIFY
                   settingsPageChanged)
    Q_PROPERTY(QString openMode READ openModeRaw WRITE setOpenModeRaw NOTIFY openModeChanged)
    Q_PROPERTY(double hoverDelay READ hoverDelay WRITE setHoverDelay NOTIFY hoverDelayChanged)
    Q_PROPERTY(QString language READ languageRaw WRITE setLanguageRaw NOTIFY languageChanged)
    Q_PROPERTY(bool isArabic READ isArabic NOTIFY isArabicChanged)
    // The user's calendars as a JSON array (read and written by the calendar service).
    Q_PROPERTY(QString calendarSources READ calendarSources WRITE setCalendarSources NOTIFY
                   calendarSourcesChanged)
    // The version that ran last ("" before the first run) and when the update feed was last read
    // (seconds since 1970, 0 for never): what decides the what's-new window and the next check.
    Q_PROPERTY(QString lastSeenVersion READ lastSeenVersion WRITE setLastSeenVersion NOTIFY
                   lastSeenVersionChanged)
    Q_PROPERTY(double lastUpdateCheck READ lastUpdateCheck WRITE setLastUpdateCheck NOTIFY
                   lastUpdateCheckChanged)

public:
    // preferredLanguages: the system's ordered list of preferred interface languages (BCP 47
    // names such as "ar-SA"); production passes systemPreferredLanguages.
    AppSettings(SettingsStore& store, std::function<QStringList()> preferredLanguages,
                QObject* parent = nullptr);

    static QStringList systemPreferredLanguages();

    bool hasCompletedOnboarding() const { return hasCompletedOnboarding_; }
    void setHasCompletedOnboarding(bool value);
    QString prayerCityID() const { return prayerCityID_; }
    void setPrayerCityID(const QString& value);
    CalculationMethod prayerMethod() const { return prayerMethod_; }
    void setPrayerMethod(CalculationMethod value);
    QString prayerMethodRaw() const;
    void setPrayerMethodRaw(const QString& raw);
    AsrMethod asrMethod() const { return asrMethod_; }
    void setAsrMethod(AsrMethod value);
    QString asrMethodRaw() const;
    void setAsrMethodRaw(const QString& raw);
    bool adhanAlert() const { return adhanAlert_; }
    void setAdhanAlert(bool value);
    bool adhanSound() const { return adhanSound_; }
    void setAdhanSound(bool value);
    bool prayerInNotch() const { return prayerInNotch_; }
    void setPrayerInNotch(bool value);
    bool musicInNotch() const { return musicInNotch_; }
    void setMusicInNotch(bool value);
    bool barsFollowSound() const { return barsFollowSound_; }
    void setBarsFollowSound(bool value);
    bool calendarInNotch() const { return calendarInNotch_; }
    void setCalendarInNotch(bool value);
    bool transfersInNotch() const { return transfersInNotch_; }
    void setTransfersInNotch(bool value);
    bool devicesInNotch() const { return devicesInNotch_; }
    void setDevicesInNotch(bool value);
    bool timerKeepAwake() const { return timerKeepAwake_; }
    void setTimerKeepAwake(bool value);
    bool captureCopy() const { return captureCopy_; }
    void setCaptureCopy(bool value);
    bool captureMicrophone() const { return captureMicrophone_; }
    void setCaptureMicrophone(bool value);
    bool captureShowClicks() const { return captureShowClicks_; }
    void setCaptureShowClicks(bool value);
    bool timerSound() const { return timerSound_; }
    void setTimerSound(bool value);
    QString focusShortcutOn() const { return focusShortcutOn_; }
    void setFocusShortcutOn(const QString& value);
    QString focusShortcutOff() const { return focusShortcutOff_; }
    void setFocusShortcutOff(const QString& value);
    double lastTimerMinutes() const { return lastTimerMinutes_; }
    void setLastTimerMinutes(double value);
    bool autoUpdate() const { return autoUpdate_; }
    void setAutoUpdate(bool value);
    bool shareUsageStats() const { return shareUsageStats_; }
    void setShareUsageStats(bool value);
    bool clipboardEnabled() const { return clipboardEnabled_; }
    void setClipboardEnabled(bool value);
    int clipboardLimit() const { return clipboardLimit_; }
    void setClipboardLimit(int value);
    bool notchEnabled() const { return notchEnabled_; }
    void setNotchEnabled(bool value);
    AppTheme theme() const { return theme_; }
    void setTheme(AppTheme value);
    QString themeRaw() const;
    void setThemeRaw(const QString& raw);
    SettingsPage settingsPage() const { return settingsPage_; }
    void setSettingsPage(SettingsPage value);
    QString settingsPageRaw() const;
    void setSettingsPageRaw(const QString& raw);
    OpenMode openMode() const { return openMode_; }
    void setOpenMode(OpenMode value);
    QString openModeRaw() const;
    void setOpenModeRaw(const QString& raw);
    double hoverDelay() const { return hoverDelay_; }
    void setHoverDelay(double value);
    AppLanguage language() const { return language_; }
    void setLanguage(AppLanguage value);
    QString languageRaw() const;
    void setLanguageRaw(const QString& raw);

    // Arabic when chosen, English when chosen; with the system language, Arabic exactly when the
    // first preferred language is an Arabic one.
    bool isArabic() const;

    QString calendarSources() const { return calendarSources_; }
    void setCalendarSources(const QString& value);
    QString lastSeenVersion() const { return lastSeenVersion_; }
    void setLastSeenVersion(const QString& value);
    double lastUpdateCheck() const { return lastUpdateCheck_; }
    void setLastUpdateCheck(double value);

signals:
    void hasCompletedOnboardingChanged();
    void prayerCityIDChanged();
    void prayerMethodChanged();
    void asrMethodChanged();
    void adhanAlertChanged();
    void adhanSoundChanged();
    void prayerInNotchChanged();
    void musicInNotchChanged();
    void barsFollowSoundChanged();
    void calendarInNotchChanged();
    void transfersInNotchChanged();
    void devicesInNotchChanged();
    void timerKeepAwakeChanged();
    void captureCopyChanged();
    void captureMicrophoneChanged();
    void captureShowClicksChanged();
    void timerSoundChanged();
    void focusShortcutOnChanged();
    void focusShortcutOffChanged();
    void lastTimerMinutesChanged();
    void autoUpdateChanged();
    void shareUsageStatsChanged();
    void clipboardEnabledChanged();
    void clipboardLimitChanged();
    void notchEnabledChanged();
    void themeChanged();
    void settingsPageChanged();
    void openModeChanged();
    void hoverDelayChanged();
    void languageChanged();
    void isArabicChanged();
    void calendarSourcesChanged();
    void lastSeenVersionChanged();
    void lastUpdateCheckChanged();
    // One merged notification, sent after the changed property's own signal.
    void settingsChanged();

private:
    // Publishes a changed value, then writes it under `key` (none for what is never stored).
    template <typename T>
    void assign(T& field, const T& value, void (AppSettings::*changed)(),
                const std::optional<QString>& key);
    // For QML, which sets enumerations by their raw text; unknown text is logged and ignored.
    template <typename Enum, std::size_t N>
    void setFromRaw(const QString& raw, const std::array<Enum, N>& allCases,
                    void (AppSettings::*set)(Enum), const QString& key);
    void store(const QString& key, bool value);
    void store(const QString& key, int value);
    void store(const QString& key, double value);
    void store(const QString& key, const QString& value);
    // Enumerations are stored as their raw value.
    template <typename Enum>
    requires std::is_enum_v<Enum>
    void store(const QString& key, Enum value) { store(key, toQString(rawValue(value))); }

    bool loadPlainBool(const QString& key) const;
    bool loadBool(const QString& key, bool fallback) const;
    int loadInt(const QString& key, int fallback) const;
    double loadDouble(const QString& key, double fallback) const;
    QString loadString(const QString& key, const QString& fallback) const;
    template <typename Enum, std::size_t N>
    Enum loadEnum(const QString& key, const std::array<Enum, N>& allCases) const;
    template <typename Enum>
    Enum loadExactEnum(const QString& key, Enum fallback, Enum onlyChoice) const;
    void logRejected(const QString& key, const QString& raw) const;

    SettingsStore& store_;
    // Read once: the preferred list does not change under a running session in practice, and
    // isArabic is read on every drawn text.
    bool systemPrefersArabic_ = false;

    bool hasCompletedOnboarding_ = false;
    QString prayerCityID_ = QStringLiteral("manama");
    CalculationMethod prayerMethod_ = CalculationMethod::ummAlQura;
    AsrMethod asrMethod_ = AsrMethod::standard;
    bool adhanAlert_ = true;
    bool adhanSound_ = true;
    bool prayerInNotch_ = true;
    bool musicInNotch_ = true;
    bool barsFollowSound_ = true;
    bool calendarInNotch_ = true;
    bool transfersInNotch_ = true;
    bool devicesInNotch_ = true;
    bool timerKeepAwake_ = true;
    bool captureCopy_ = false;
    bool captureMicrophone_ = false;
    bool captureShowClicks_ = true;
    bool timerSound_ = true;
    QString focusShortcutOn_ = QString();
    QString focusShortcutOff_ = QString();
    double lastTimerMinutes_ = 25.0;
    bool autoUpdate_ = true;
    bool shareUsageStats_ = true;
    bool clipboardEnabled_ = true;
    int clipboardLimit_ = 200;
    bool notchEnabled_ = true;
    AppTheme theme_ = AppTheme::system;
    SettingsPage settingsPage_ = SettingsPage::general;
    OpenMode openMode_ = OpenMode::hover;
    double hoverDelay_ = 0.15;
    AppLanguage language_ = AppLanguage::system;
    QString calendarSources_ = QStringLiteral("[]");
    QString lastSeenVersion_;
    double lastUpdateCheck_ = 0;
};

} // namespace navro
