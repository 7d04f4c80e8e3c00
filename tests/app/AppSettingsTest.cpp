#include "app/AppSettings.h"

#include "FakeSettingsStore.h"
#include "app/Log.h"

#include <QMetaProperty>
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

// What QML sees of a setting: the property named after its key.
QVariant shown(const AppSettings& settings, const QString& key)
{
    return settings.property(key.toUtf8().constData());
}

TEST(AppSettingsFreshInstall, YieldsTheDefaultOfEveryPropertyAndWritesNothing)
{
    CapturingLogSink log;
    FakeSettingsStore store;
    AppSettings settings(store, englishFirst);
    const std::map<QString, QVariant> defaults{
        {"hasCompletedOnboarding", false},
        {"prayerCityID", "manama"},
        {"prayerMethod", "ummAlQura"},
        {"asrMethod", "standard"},
        {"adhanAlert", true},
        {"adhanSound", true},
        {"prayerInNotch", true},
        {"musicInNotch", true},
        {"barsFollowSound", true},
        {"calendarInNotch", true},
        {"transfersInNotch", true},
        {"devicesInNotch", true},
        {"timerKeepAwake", true},
        {"captureCopy", false},
        {"captureMicrophone", false},
        {"captureShowClicks", true},
        {"timerSound", true},
        {"focusShortcutOn", ""},
        {"focusShortcutOff", ""},
        {"lastTimerMinutes", 25.0},
        {"autoUpdate", true},
        {"shareUsageStats", true},
        {"clipboardEnabled", true},
        {"clipboardLimit", 200},
        {"notchEnabled", true},
        {"theme", "system"},
        {"settingsPage", "general"},
        {"openMode", "hover"},
        {"hoverDelay", 0.15},
        {"language", "system"},
        {"isArabic", false},
        {"calendarSources", "[]"},
        {"lastSeenVersion", ""},
        {"lastUpdateCheck", 0.0},
    };
    const QMetaObject& meta = *settings.metaObject();
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QString key = meta.property(i).name();
        ASSERT_TRUE(defaults.contains(key)) << "no default stated for " << key.toStdString();
        EXPECT_EQ(shown(settings, key), defaults.at(key)) << key.toStdString();
    }
    EXPECT_EQ(meta.propertyCount() - meta.propertyOffset(), int(defaults.size()));
    EXPECT_TRUE(store.writtenKeys.empty());
    EXPECT_TRUE(log.lines.empty()) << "a missing key is no error";
}

// A stored value counts only with the right type and, for a choice, exactly its text; anything
// else yields the default and one log line naming the key.
TEST(AppSettingsLoading, StoredValuesCountOnlyWithTheRightTypeAndExactText)
{
    struct Case {
        QString key;
        FakeSettingsStore::Value stored;
        QVariant expected;
        bool kept;
    };
    const std::vector<Case> cases{
        {"notchEnabled", false, false, true},
        {"clipboardLimit", 50, 50, true},
        {"hoverDelay", 0.4, 0.4, true},
        {"prayerCityID", QStringLiteral("riyadh"), "riyadh", true},
        {"prayerMethod", QStringLiteral("isna"), "isna", true},
        {"theme", QStringLiteral("dark"), "dark", true},
        {"language", QStringLiteral("arabic"), "arabic", true},
        {"hasCompletedOnboarding", true, true, true},
        {"openMode", QStringLiteral("click"), "click", true},
        {"asrMethod", QStringLiteral("hanafi"), "hanafi", true},
        {"adhanAlert", QStringLiteral("no"), true, false},
        {"captureMicrophone", 1, false, false},
        {"clipboardLimit", 1.5, 200, false},
        {"hoverDelay", QStringLiteral("fast"), 0.15, false},
        {"lastTimerMinutes", true, 25.0, false},
        {"prayerCityID", 3, "manama", false},
        {"hasCompletedOnboarding", QStringLiteral("true"), false, false},
        {"hasCompletedOnboarding", 1, false, false},
        {"language", QStringLiteral("Arabic"), "system", false},
        {"theme", QStringLiteral("neon"), "system", false},
        {"prayerMethod", QStringLiteral(""), "ummAlQura", false},
        {"openMode", QStringLiteral("Click"), "hover", false},
        {"openMode", QStringLiteral("click "), "hover", false},
        {"asrMethod", QStringLiteral("HANAFI"), "standard", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key.toStdString() + " " + c.expected.toString().toStdString());
        CapturingLogSink log;
        FakeSettingsStore store;
        store.values = {{c.key, c.stored}};
        Loaded loaded(store);
        EXPECT_EQ(shown(loaded.settings, c.key), c.expected);
        EXPECT_EQ(log.lines.size(), c.kept ? 0u : 1u);
        EXPECT_EQ(log.contains("Navro: setting \"" + c.key.toStdString() + "\""), !c.kept);
    }
}

// Only the settings window's page is never stored: it opens on General whatever was shown last.
TEST(AppSettingsLoading, StoredValuesSurviveARelaunchButTheSettingsPageStartsAtGeneral)
{
    FakeSettingsStore store;
    {
        Loaded first(store);
        first.settings.setNotchEnabled(false);
        first.settings.setHasCompletedOnboarding(true);
        first.settings.setSettingsPage(SettingsPage::about);
    }
    EXPECT_EQ(store.values.count("settingsPage"), 0u);
    store.values["settingsPage"] = QStringLiteral("about");
    Loaded second(store);
    EXPECT_FALSE(second.settings.notchEnabled());
    EXPECT_TRUE(second.settings.hasCompletedOnboarding());
    EXPECT_EQ(second.settings.settingsPage(), SettingsPage::general);
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

class AppSettingsWriting : public ::testing::Test {
protected:
    FakeSettingsStore store;
    AppSettings settings{store, englishFirst};
};

TEST_F(AppSettingsWriting, PublishesBeforeStoring)
{
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

TEST_F(AppSettingsWriting, EachKindIsStoredWithItsOwnTypeUnderItsKey)
{
    settings.setAdhanSound(false);
    settings.setHoverDelay(0.3);
    settings.setLastTimerMinutes(45);
    settings.setFocusShortcutOff(QStringLiteral("Relax"));
    settings.setPrayerMethod(CalculationMethod::egyptian);
    settings.setOpenMode(OpenMode::click);
    settings.setThemeRaw(QStringLiteral("light"));

    EXPECT_EQ(std::get<bool>(store.values.at("adhanSound")), false);
    EXPECT_EQ(std::get<double>(store.values.at("hoverDelay")), 0.3);
    EXPECT_EQ(std::get<double>(store.values.at("lastTimerMinutes")), 45.0);
    EXPECT_EQ(std::get<QString>(store.values.at("focusShortcutOff")), "Relax");
    EXPECT_EQ(std::get<QString>(store.values.at("prayerMethod")), "egyptian");
    EXPECT_EQ(std::get<QString>(store.values.at("openMode")), "click");
    EXPECT_EQ(std::get<QString>(store.values.at("theme")), "light");
}

// Neither the current value nor a raw value from QML that names no choice changes anything; the
// latter is logged.
TEST_F(AppSettingsWriting, TheCurrentValueOrAnUnknownRawValueEmitsAndStoresNothing)
{
    CapturingLogSink log;
    int notified = 0;
    QObject::connect(&settings, &AppSettings::settingsChanged, [&] { ++notified; });
    QObject::connect(&settings, &AppSettings::notchEnabledChanged, [&] { ++notified; });
    QObject::connect(&settings, &AppSettings::themeChanged, [&] { ++notified; });

    settings.setNotchEnabled(true);
    settings.setTheme(AppTheme::system);
    settings.setPrayerCityID(QStringLiteral("manama"));
    settings.setHoverDelay(0.15);
    settings.setThemeRaw(QStringLiteral("Dark"));
    settings.setOpenModeRaw(QStringLiteral("doubleClick"));

    EXPECT_EQ(notified, 0);
    EXPECT_TRUE(store.writtenKeys.empty());
    EXPECT_EQ(settings.themeRaw(), "system");
    EXPECT_EQ(settings.openMode(), OpenMode::hover);
    EXPECT_TRUE(log.contains("\"Dark\""));
    EXPECT_TRUE(log.contains("\"doubleClick\""));
}

} // namespace
} // namespace navro
