#include "app/AppSettings.h"

#include "FakeSettingsStore.h"
#include "app/Log.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

QStringList englishFirst()
{
    return {QStringLiteral("en-GB"), QStringLiteral("ar")};
}

struct Loaded {
    explicit Loaded(FakeSettingsStore& store, QStringList preferred = englishFirst())
        : settings(store, [preferred] { return preferred; })
    {
    }
    AppSettings settings;
};

TEST(AppSettingsFreshInstall, YieldsTheDefaultOfEveryPropertyAndWritesNothing)
{
    FakeSettingsStore store;
    AppSettings settings(store, englishFirst);

    EXPECT_FALSE(settings.hasCompletedOnboarding());
    EXPECT_EQ(settings.prayerCityID(), "manama");
    EXPECT_EQ(settings.prayerMethod(), CalculationMethod::ummAlQura);
    EXPECT_EQ(settings.asrMethod(), AsrMethod::standard);
    for (bool on :
         {settings.adhanAlert(), settings.adhanSound(), settings.prayerInNotch(),
          settings.musicInNotch(), settings.barsFollowSound(), settings.calendarInNotch(),
          settings.transfersInNotch(), settings.devicesInNotch(), settings.timerKeepAwake(),
          settings.captureShowClicks(), settings.timerSound(), settings.autoUpdate(),
          settings.shareUsageStats(), settings.clipboardEnabled(), settings.notchEnabled()})
        EXPECT_TRUE(on);
    EXPECT_FALSE(settings.captureCopy());
    EXPECT_FALSE(settings.captureMicrophone());
    EXPECT_EQ(settings.focusShortcutOn(), "");
    EXPECT_EQ(settings.focusShortcutOff(), "");
    EXPECT_EQ(settings.lastTimerMinutes(), 25.0);
    EXPECT_EQ(settings.clipboardLimit(), 200);
    EXPECT_EQ(settings.theme(), AppTheme::system);
    EXPECT_EQ(settings.settingsPage(), SettingsPage::general);
    EXPECT_EQ(settings.openMode(), OpenMode::hover);
    EXPECT_EQ(settings.hoverDelay(), 0.15);
    EXPECT_EQ(settings.language(), AppLanguage::system);
    EXPECT_TRUE(store.writtenKeys.empty());
}

TEST(AppSettingsLoading, StoredValuesOfTheRightTypeWinOverTheDefaults)
{
    FakeSettingsStore store;
    store.values = {{"notchEnabled", false},
                    {"captureCopy", true},
                    {"clipboardLimit", 50},
                    {"hoverDelay", 0.4},
                    {"lastTimerMinutes", 7.5},
                    {"prayerCityID", QStringLiteral("riyadh")},
                    {"focusShortcutOn", QStringLiteral("Work, deep")},
                    {"prayerMethod", QStringLiteral("isna")},
                    {"theme", QStringLiteral("dark")},
                    {"language", QStringLiteral("arabic")}};
    Loaded loaded(store);
    const auto& settings = loaded.settings;

    EXPECT_FALSE(settings.notchEnabled());
    EXPECT_TRUE(settings.captureCopy());
    EXPECT_EQ(settings.clipboardLimit(), 50);
    EXPECT_EQ(settings.hoverDelay(), 0.4);
    EXPECT_EQ(settings.lastTimerMinutes(), 7.5);
    EXPECT_EQ(settings.prayerCityID(), "riyadh");
    EXPECT_EQ(settings.focusShortcutOn(), "Work, deep");
    EXPECT_EQ(settings.prayerMethod(), CalculationMethod::isna);
    EXPECT_EQ(settings.theme(), AppTheme::dark);
    EXPECT_EQ(settings.language(), AppLanguage::arabic);
}

TEST(AppSettingsLoading, ValuesOfAnotherTypeYieldTheDefaultAndALogLine)
{
    CapturingLogSink log;
    FakeSettingsStore store;
    store.values = {
        {"adhanAlert", QStringLiteral("no")},   {"captureMicrophone", 1},   {"clipboardLimit", 1.5},
        {"hoverDelay", QStringLiteral("fast")}, {"lastTimerMinutes", true}, {"prayerCityID", 3}};
    Loaded loaded(store);
    const auto& settings = loaded.settings;

    EXPECT_TRUE(settings.adhanAlert());
    EXPECT_FALSE(settings.captureMicrophone());
    EXPECT_EQ(settings.clipboardLimit(), 200);
    EXPECT_EQ(settings.hoverDelay(), 0.15);
    EXPECT_EQ(settings.lastTimerMinutes(), 25.0);
    EXPECT_EQ(settings.prayerCityID(), "manama");
    EXPECT_TRUE(log.contains("Navro: setting \"adhanAlert\""));
    EXPECT_TRUE(log.contains("\"clipboardLimit\""));
    EXPECT_FALSE(log.contains("\"notchEnabled\"")) << "a missing key is no error";
}

TEST(AppSettingsLoading, OnboardingIsCompletedOnlyByAStoredTrue)
{
    CapturingLogSink log;
    for (auto [stored, expected] : std::vector<std::pair<FakeSettingsStore::Value, bool>>{
             {true, true}, {false, false}, {QStringLiteral("true"), false}, {1, false}}) {
        FakeSettingsStore store;
        store.values["hasCompletedOnboarding"] = stored;
        Loaded loaded(store);
        EXPECT_EQ(loaded.settings.hasCompletedOnboarding(), expected) << stored.index();
    }
}

TEST(AppSettingsLoading, LanguageThemeAndMethodFallBackToTheirFirstCase)
{
    CapturingLogSink log;
    FakeSettingsStore store;
    store.values = {{"language", QStringLiteral("Arabic")},
                    {"theme", QStringLiteral("neon")},
                    {"prayerMethod", QStringLiteral("")}};
    Loaded loaded(store);
    EXPECT_EQ(loaded.settings.language(), AppLanguage::system);
    EXPECT_EQ(loaded.settings.theme(), AppTheme::system);
    EXPECT_EQ(loaded.settings.prayerMethod(), CalculationMethod::ummAlQura);
    EXPECT_TRUE(log.contains("\"neon\""));
}

TEST(AppSettingsLoading, OpenModeAndAsrMethodTakeTheirOtherCaseOnlyForItsExactText)
{
    CapturingLogSink log;
    const std::vector<std::tuple<QString, OpenMode, AsrMethod>> cases{
        {"click", OpenMode::click, AsrMethod::standard},
        {"Click", OpenMode::hover, AsrMethod::standard},
        {"click ", OpenMode::hover, AsrMethod::standard},
        {"hanafi", OpenMode::hover, AsrMethod::hanafi},
        {"HANAFI", OpenMode::hover, AsrMethod::standard},
    };
    for (const auto& [text, mode, asr] : cases) {
        FakeSettingsStore store;
        store.values = {{"openMode", text}, {"asrMethod", text}};
        Loaded loaded(store);
        EXPECT_EQ(loaded.settings.openMode(), mode) << text.toStdString();
        EXPECT_EQ(loaded.settings.asrMethod(), asr) << text.toStdString();
    }
    EXPECT_TRUE(log.contains("setting \"openMode\" has no choice \"Click\""));
}

TEST(AppSettingsLoading, SettingsPageStartsAtGeneralWhateverWasShownLast)
{
    FakeSettingsStore store;
    {
        Loaded first(store);
        first.settings.setSettingsPage(SettingsPage::about);
        EXPECT_EQ(first.settings.settingsPage(), SettingsPage::about);
    }
    EXPECT_EQ(store.values.count("settingsPage"), 0u);
    store.values["settingsPage"] = QStringLiteral("about");
    Loaded second(store);
    EXPECT_EQ(second.settings.settingsPage(), SettingsPage::general);
}

TEST(AppSettingsLoading, AStoredFalseSurvivesARelaunch)
{
    FakeSettingsStore store;
    {
        Loaded first(store);
        first.settings.setNotchEnabled(false);
        first.settings.setHasCompletedOnboarding(true);
    }
    Loaded second(store);
    EXPECT_FALSE(second.settings.notchEnabled());
    EXPECT_TRUE(second.settings.hasCompletedOnboarding());
}

TEST(AppSettingsLanguage, SystemLanguageFollowsTheFirstPreferredLanguage)
{
    FakeSettingsStore store;
    EXPECT_TRUE(Loaded(store, {"ar-SA", "en-US"}).settings.isArabic());
    EXPECT_TRUE(Loaded(store, {"ar"}).settings.isArabic());
    EXPECT_FALSE(Loaded(store, {"en-GB", "ar"}).settings.isArabic());
    EXPECT_FALSE(Loaded(store, {}).settings.isArabic());
}

TEST(AppSettingsLanguage, AChosenLanguageOverridesTheSystemAndNotifiesOnlyRealFlips)
{
    FakeSettingsStore store;
    Loaded loaded(store, {"ar-SA"});
    auto& settings = loaded.settings;
    int flips = 0;
    QObject::connect(&settings, &AppSettings::isArabicChanged, [&] { ++flips; });

    settings.setLanguage(AppLanguage::arabic);
    EXPECT_TRUE(settings.isArabic());
    EXPECT_EQ(flips, 0) << "system already showed Arabic";
    settings.setLanguage(AppLanguage::english);
    EXPECT_FALSE(settings.isArabic());
    EXPECT_EQ(flips, 1);
    settings.setLanguageRaw(QStringLiteral("system"));
    EXPECT_TRUE(settings.isArabic());
    EXPECT_EQ(flips, 2);
}

TEST(AppSettingsWriting, PublishesBeforeStoring)
{
    FakeSettingsStore store;
    Loaded loaded(store);
    auto& settings = loaded.settings;
    std::vector<std::string> events;
    QObject::connect(&settings, &AppSettings::clipboardLimitChanged, [&] {
        events.push_back("changed " + std::to_string(settings.clipboardLimit()) +
                         (store.values.count("clipboardLimit") ? " stored" : " not stored"));
    });
    QObject::connect(&settings, &AppSettings::settingsChanged,
                     [&] { events.push_back("settingsChanged"); });
    store.onWrite = [&](const QString& key) { events.push_back("write " + key.toStdString()); };

    settings.setClipboardLimit(500);

    EXPECT_EQ(events, (std::vector<std::string>{"changed 500 not stored", "settingsChanged",
                                                "write clipboardLimit"}));
    EXPECT_EQ(std::get<int>(store.values.at("clipboardLimit")), 500);
}

TEST(AppSettingsWriting, EachKindIsStoredWithItsOwnTypeUnderItsKey)
{
    FakeSettingsStore store;
    Loaded loaded(store);
    auto& settings = loaded.settings;
    settings.setAdhanSound(false);
    settings.setHoverDelay(0.3);
    settings.setLastTimerMinutes(45);
    settings.setFocusShortcutOff(QStringLiteral("Relax"));
    settings.setPrayerMethod(CalculationMethod::egyptian);
    settings.setAsrMethod(AsrMethod::hanafi);
    settings.setOpenMode(OpenMode::click);
    settings.setThemeRaw(QStringLiteral("light"));

    EXPECT_EQ(std::get<bool>(store.values.at("adhanSound")), false);
    EXPECT_EQ(std::get<double>(store.values.at("hoverDelay")), 0.3);
    EXPECT_EQ(std::get<double>(store.values.at("lastTimerMinutes")), 45.0);
    EXPECT_EQ(std::get<QString>(store.values.at("focusShortcutOff")), "Relax");
    EXPECT_EQ(std::get<QString>(store.values.at("prayerMethod")), "egyptian");
    EXPECT_EQ(std::get<QString>(store.values.at("asrMethod")), "hanafi");
    EXPECT_EQ(std::get<QString>(store.values.at("openMode")), "click");
    EXPECT_EQ(std::get<QString>(store.values.at("theme")), "light");
}

TEST(AppSettingsWriting, SettingTheCurrentValueEmitsAndStoresNothing)
{
    FakeSettingsStore store;
    Loaded loaded(store);
    auto& settings = loaded.settings;
    int notified = 0;
    QObject::connect(&settings, &AppSettings::settingsChanged, [&] { ++notified; });
    QObject::connect(&settings, &AppSettings::notchEnabledChanged, [&] { ++notified; });
    QObject::connect(&settings, &AppSettings::themeChanged, [&] { ++notified; });

    settings.setNotchEnabled(true);
    settings.setTheme(AppTheme::system);
    settings.setPrayerCityID(QStringLiteral("manama"));
    settings.setHoverDelay(0.15);

    EXPECT_EQ(notified, 0);
    EXPECT_TRUE(store.writtenKeys.empty());
}

TEST(AppSettingsWriting, AnUnknownRawValueFromQmlIsRefusedWithALogLine)
{
    CapturingLogSink log;
    FakeSettingsStore store;
    Loaded loaded(store);
    auto& settings = loaded.settings;
    settings.setTheme(AppTheme::dark);
    store.writtenKeys.clear();

    settings.setThemeRaw(QStringLiteral("Dark"));
    settings.setOpenModeRaw(QStringLiteral("doubleClick"));

    EXPECT_EQ(settings.themeRaw(), "dark");
    EXPECT_EQ(settings.openMode(), OpenMode::hover);
    EXPECT_TRUE(store.writtenKeys.empty());
    EXPECT_TRUE(log.contains("\"doubleClick\""));
}

} // namespace
} // namespace navro
