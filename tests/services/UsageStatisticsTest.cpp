#include "services/UsageStatistics.h"

#include "FakeSettingsStore.h"
#include "LocalHttpServer.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"

#include <QDateTime>
#include <filesystem>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

// Statistics reported to `endpoint`, kept in a fresh folder, on a clock that starts at 10:00
// local time.
struct Collecting {
    explicit Collecting(const QUrl& endpoint, bool share = true)
        : clock(tenInTheMorning()),
          settings(store, [] { return QStringList{QStringLiteral("ar-BH")}; }),
          usage(settings, clock, endpoint, folder / "usage.json", "0.1.0", 400ms)
    {
        settings.setShareUsageStats(share);
    }

    static WallTime tenInTheMorning()
    {
        const QDateTime time(QDate(2026, 11, 23), QTime(10, 0));
        return WallTime(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
    }

    // Until just after the next local midnight.
    void advancePastMidnight()
    {
        const QDateTime now =
            QDateTime::fromMSecsSinceEpoch(clock.now().time_since_epoch().count());
        const QDateTime midnight(now.date().addDays(1), QTime(0, 0, 2));
        clock.advance(std::chrono::milliseconds(now.msecsTo(midnight)));
    }

    fs::path file() const { return folder / "usage.json"; }

    UsageRecord kept() const
    {
        const FileRead read = readRegularFile(file(), 1 << 20);
        return read.ok() ? decodeUsageRecord(read.bytes).record.value_or(UsageRecord{})
                         : UsageRecord{};
    }

    TemporaryFolder folder;
    FakeSettingsStore store;
    ManualClock clock;
    AppSettings settings;
    UsageStatistics usage;
};

// Each case talks to a local server of its own.
class UsageStatisticsTest : public ::testing::Test {
protected:
    QCoreApplication& application = testApplication();
    LocalHttpServer server;
};

TEST_F(UsageStatisticsTest, CountsAreKeptAndTheFinishedDayIsSentOnceAfterMidnight)
{
    server.answers[QStringLiteral("/report")] = {204, {}};
    Collecting run(server.url(QStringLiteral("/report")));
    run.usage.start();
    run.usage.noteTabOpened(QStringLiteral("notes"));
    run.usage.noteTabOpened(QStringLiteral("notes"));
    run.usage.noteTabOpened(QStringLiteral("timer"));
    run.usage.noteFeatureUsed(QStringLiteral("hotKey"));
    run.clock.advance(3s);

    const UsageRecord kept = run.kept();
    ASSERT_EQ(kept.days.size(), 1u);
    const UsageDay& today = kept.days[0];
    EXPECT_EQ(today.date, "2026-11-23");
    EXPECT_EQ(today.launches, 1);
    EXPECT_EQ(today.tabsOpened, (std::map<std::string, int>{{"notes", 2}, {"timer", 1}}));
    EXPECT_EQ(today.featuresUsed, (std::map<std::string, int>{{"hotKey", 1}}));
    EXPECT_EQ(today.language, "arabic");
    EXPECT_EQ(fs::status(run.file()).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);

    // Nothing goes out during the day; what the settings show is what goes out after it.
    QCoreApplication::processEvents();
    EXPECT_EQ(server.connections, 0);
    const QString shown = run.usage.sharedDocument();
    run.advancePastMidnight();
    ASSERT_TRUE(waitFor([&] { return server.answered == 1; }));
    EXPECT_TRUE(server.lastRequest.startsWith("POST /report "));
    EXPECT_EQ(QString::fromUtf8(server.lastBody), shown);
    EXPECT_TRUE(server.lastBody.contains("\"notes\": 2"));
    ASSERT_TRUE(waitFor([&] { return run.kept().lastSent == "2026-11-24"; }));
    EXPECT_TRUE(run.kept().days.empty());

    // The next day's counts wait for the next midnight; a day without counts sends nothing.
    run.usage.noteFeatureUsed(QStringLiteral("timer"));
    run.clock.advance(12h);
    QCoreApplication::processEvents();
    EXPECT_EQ(server.connections, 1);
    run.advancePastMidnight();
    ASSERT_TRUE(waitFor([&] { return server.answered == 2; }));
    EXPECT_TRUE(server.lastBody.contains("2026-11-24"));
    EXPECT_FALSE(server.lastBody.contains("2026-11-23"));
    run.advancePastMidnight();
    run.advancePastMidnight();
    QCoreApplication::processEvents();
    EXPECT_EQ(server.connections, 2);
}

TEST_F(UsageStatisticsTest, AFailedReportKeepsTheDaysForTheNextDay)
{
    server.answers[QStringLiteral("/report")] = {500, "down"};
    for (const char* path : {"/report", "/silent"}) {
        CapturingLogSink log;
        Collecting run(server.url(QString::fromLatin1(path)));
        run.usage.start();
        const int before = server.connections;
        run.advancePastMidnight();
        ASSERT_TRUE(waitFor([&] { return log.contains("could not send the usage statistics"); }))
            << path;
        EXPECT_EQ(log.lines.size(), 1u) << path;
        EXPECT_EQ(server.connections, before + 1) << path;
        run.usage.flush();
        EXPECT_EQ(run.kept().days.size(), 1u) << path;
        EXPECT_EQ(run.kept().lastSent, "") << path;

        // Not again the same day, but on the next one, with both days.
        run.clock.advance(6h);
        QCoreApplication::processEvents();
        EXPECT_EQ(server.connections, before + 1) << path;
        run.usage.noteTabOpened(QStringLiteral("home"));
        server.answers[QStringLiteral("/report")] = {200, "ok"};
        run.advancePastMidnight();
        if (QLatin1String(path) == QLatin1String("/report")) {
            ASSERT_TRUE(waitFor([&] { return run.kept().lastSent == "2026-11-25"; }));
            EXPECT_TRUE(server.lastBody.contains("2026-11-23"));
            EXPECT_TRUE(server.lastBody.contains("2026-11-24"));
        }
        server.answers[QStringLiteral("/report")] = {500, "down"};
    }
}

TEST_F(UsageStatisticsTest, NothingIsCountedKeptOrSentWhenOffOrWithoutAnAddress)
{
    for (bool hasEndpoint : {false, true}) {
        Collecting run(hasEndpoint ? server.url(QStringLiteral("/report")) : QUrl(),
                       hasEndpoint ? false : true);
        run.usage.start();
        run.usage.noteTabOpened(QStringLiteral("notes"));
        run.usage.noteFeatureUsed(QStringLiteral("hotKey"));
        run.clock.advance(3s);
        run.advancePastMidnight();
        run.advancePastMidnight();
        QCoreApplication::processEvents();
        EXPECT_FALSE(fs::exists(run.file())) << hasEndpoint;
        EXPECT_EQ(run.usage.sharedDocument(), QString()) << hasEndpoint;
        EXPECT_TRUE(run.usage.record().days.empty()) << hasEndpoint;
    }
    EXPECT_EQ(server.connections, 0);
}

TEST_F(UsageStatisticsTest, TurningTheSettingOffDeletesWhatWasKept)
{
    Collecting run(server.url(QStringLiteral("/report")));
    run.usage.start();
    run.usage.noteTabOpened(QStringLiteral("clipboard"));
    run.clock.advance(3s);
    ASSERT_TRUE(fs::exists(run.file()));

    run.settings.setShareUsageStats(false);
    EXPECT_FALSE(fs::exists(run.file()));
    EXPECT_EQ(run.usage.sharedDocument(), QString());
    run.usage.noteTabOpened(QStringLiteral("clipboard"));
    run.clock.advance(3s);
    run.advancePastMidnight();
    QCoreApplication::processEvents();
    EXPECT_FALSE(fs::exists(run.file()));
    EXPECT_EQ(server.connections, 0);

    // On again: counting starts from nothing.
    run.settings.setShareUsageStats(true);
    run.usage.noteTabOpened(QStringLiteral("notes"));
    run.usage.flush();
    ASSERT_EQ(run.kept().days.size(), 1u);
    EXPECT_EQ(run.kept().days[0].tabsOpened, (std::map<std::string, int>{{"notes", 1}}));
    EXPECT_EQ(run.kept().days[0].launches, 0);
}

TEST_F(UsageStatisticsTest, ADamagedFileIsKeptAsideAndCountingStartsAnew)
{
    CapturingLogSink log;
    Collecting run(server.url(QStringLiteral("/report")));
    ASSERT_FALSE(writeFileAtomically(run.file(), "{\"days\": [{\"date\": 1}]"));
    run.usage.start();
    run.usage.flush();
    EXPECT_TRUE(log.contains("usage.json is damaged")) << (log.lines.empty() ? "" : log.lines[0]);
    EXPECT_EQ(run.kept().days.size(), 1u);
    int copies = 0;
    for (const auto& entry : fs::directory_iterator(run.folder.path()))
        copies += entry.path().filename().string().starts_with("usage.unreadable-");
    EXPECT_EQ(copies, 1);
    // Names that are not Navro's own words are not counted.
    run.usage.noteTabOpened(QStringLiteral("../../etc"));
    run.usage.noteFeatureUsed(QString());
    run.usage.flush();
    EXPECT_TRUE(run.kept().days[0].tabsOpened.empty());
    EXPECT_TRUE(run.kept().days[0].featuresUsed.empty());
}

TEST(UsageCounts, TheFileReadsBackWhatWasWrittenAndRefusesDamage)
{
    UsageRecord record;
    record.lastSent = "2026-11-20";
    UsageDay& first = record.day("2026-11-21");
    first.launches = 3;
    first.tabsOpened["nowPlaying"] = 4;
    first.language = "arabic";
    record.day("2026-11-22").featuresUsed["timer"] = 1;
    const auto again = decodeUsageRecord(encodeUsageRecord(record));
    ASSERT_TRUE(again.record) << again.error;
    EXPECT_EQ(*again.record, record);

    const std::string_view damaged[] = {
        "",
        "[]",
        R"({"days": {}, "lastSent": ""})",
        R"({"days": [], "lastSent": 3})",
        R"({"days": [], "lastSent": "yesterday"})",
        R"({"days": [{"date": "2026-11-21", "launches": -1, "tabsOpened": {}, "featuresUsed": {}, "language": "english"}], "lastSent": ""})",
        R"({"days": [{"date": "2026-11-21", "launches": 1.5, "tabsOpened": {}, "featuresUsed": {}, "language": "english"}], "lastSent": ""})",
        R"({"days": [{"date": "2026-11-21", "launches": 1, "tabsOpened": {"a b": 1}, "featuresUsed": {}, "language": "english"}], "lastSent": ""})",
        R"({"days": [{"date": "2026-11-21", "launches": 1, "tabsOpened": {}, "featuresUsed": {}, "language": "french"}], "lastSent": ""})",
        R"({"days": [{"date": "2026-11-21", "launches": 1, "tabsOpened": {}, "featuresUsed": {"x": "1"}, "language": "english"}], "lastSent": ""})",
        R"({"days": [{"date": "2026-11-21", "launches": 1, "tabsOpened": {}, "featuresUsed": {}, "language": "english"},
                     {"date": "2026-11-21", "launches": 1, "tabsOpened": {}, "featuresUsed": {}, "language": "english"}], "lastSent": ""})",
    };
    for (std::string_view bytes : damaged) {
        const auto decoded = decodeUsageRecord(bytes);
        EXPECT_FALSE(decoded.record) << bytes;
        EXPECT_FALSE(decoded.error.empty()) << bytes;
    }
}

TEST(UsageCounts, AtMostAMonthOfDaysIsKept)
{
    UsageRecord record;
    for (int day = 1; day <= 40; ++day)
        record.day("2026-10-" + std::to_string(day + 10)).launches = day;
    ASSERT_EQ(record.days.size(), maxUsageDays);
    EXPECT_EQ(record.days.front().launches, 40 - int(maxUsageDays) + 1);
    EXPECT_EQ(record.days.back().launches, 40);
    EXPECT_TRUE(decodeUsageRecord(encodeUsageRecord(record)).record);
}

} // namespace
} // namespace navro
