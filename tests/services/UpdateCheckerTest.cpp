#include "services/UpdateChecker.h"

#include "FakeSettingsStore.h"
#include "LocalHttpServer.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "app/AppSettings.h"
#include "app/Log.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

const QByteArray feedOf(const char* version)
{
    return QByteArray(R"({"version": ")") + version +
           R"(", "date": "2026-12-01", "notes": {"en": "Faster", "ar": "أسرع"},
               "link": "https://navro.example/download"})";
}

double secondsOf(WallTime time)
{
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

FakeSettingsStore storeWith(bool autoUpdate, double lastCheck)
{
    FakeSettingsStore store;
    store.values[QStringLiteral("autoUpdate")] = autoUpdate;
    store.values[QStringLiteral("lastUpdateCheck")] = lastCheck;
    return store;
}

// A checker of version 0.1.0 with a timeout short enough for "no answer" to come quickly.
struct Checking {
    explicit Checking(const QUrl& feed, bool autoUpdate = true, double lastCheck = 0)
        : store(storeWith(autoUpdate, lastCheck)),
          settings(store, [] { return QStringList{QStringLiteral("en-GB")}; }),
          checker(settings, clock, feed, "0.1.0", 400ms)
    {
    }

    bool finished() const
    {
        return checker.state() != QLatin1String("checking") &&
               checker.state() != QLatin1String("idle");
    }

    FakeSettingsStore store;
    ManualClock clock;
    AppSettings settings;
    UpdateChecker checker;
};

// Each case talks to a local server of its own.
class UpdateCheckerTest : public ::testing::Test {
protected:
    QCoreApplication& application = testApplication();
    LocalHttpServer server;
};

TEST_F(UpdateCheckerTest, TellsANewerVersionFromTheSameOrAnOlderOne)
{
    server.answers[QStringLiteral("/newer")] = {200, feedOf("0.2.0")};
    server.answers[QStringLiteral("/same")] = {200, feedOf("0.1")};
    server.answers[QStringLiteral("/older")] = {200, feedOf("0.0.9")};
    const struct {
        const char* path;
        const char* state;
        const char* latest;
    } cases[] = {
        {"/newer", "available", "0.2.0"},
        {"/same", "upToDate", ""},
        {"/older", "upToDate", ""},
    };
    for (const auto& example : cases) {
        CapturingLogSink log;
        Checking run(server.url(QString::fromLatin1(example.path)));
        run.checker.checkNow();
        ASSERT_TRUE(waitFor([&] { return run.finished(); })) << example.path;
        EXPECT_EQ(run.checker.state(), QLatin1String(example.state)) << example.path;
        EXPECT_EQ(run.checker.latestVersion(), QLatin1String(example.latest)) << example.path;
        EXPECT_TRUE(log.lines.empty()) << example.path;
    }
    Checking run(server.url(QStringLiteral("/newer")));
    run.checker.checkNow();
    ASSERT_TRUE(waitFor([&] { return run.finished(); }));
    EXPECT_EQ(run.checker.notesEnglish(), QStringLiteral("Faster"));
    EXPECT_EQ(run.checker.notesArabic(), QStringLiteral("أسرع"));
    EXPECT_EQ(run.checker.link(), QStringLiteral("https://navro.example/download"));
    EXPECT_TRUE(server.lastRequest.startsWith("GET /newer "));
}

TEST_F(UpdateCheckerTest, AFailureIsOneLogLineAndCouldNotCheck)
{
    server.answers[QStringLiteral("/malformed")] = {200, "{\"version\": \"0.2.0\", \"link\""};
    server.answers[QStringLiteral("/error")] = {500, feedOf("0.2.0")};
    server.answers[QStringLiteral("/huge")] = {200, QByteArray(200 * 1024, ' ') + feedOf("0.2.0")};
    const struct {
        const char* path;
        const char* reason;
    } cases[] = {
        {"/malformed", "not JSON"},
        {"/error", "500"},
        {"/missing", "404"},
        {"/silent", "could not check for updates"}, // no answer within the timeout
        {"/huge", "larger than"},
    };
    for (const auto& example : cases) {
        CapturingLogSink log;
        Checking run(server.url(QString::fromLatin1(example.path)));
        run.checker.checkNow();
        ASSERT_TRUE(waitFor([&] { return run.finished(); })) << example.path;
        EXPECT_EQ(run.checker.state(), QStringLiteral("failed")) << example.path;
        EXPECT_EQ(run.checker.latestVersion(), QString()) << example.path;
        ASSERT_EQ(log.lines.size(), 1u) << example.path;
        EXPECT_TRUE(log.contains("could not check for updates")) << log.lines[0];
        EXPECT_TRUE(log.contains(example.reason)) << log.lines[0];
        EXPECT_EQ(log.priorities[0], LogPriority::warning);
    }
}

TEST_F(UpdateCheckerTest, ChecksOnceADayWhileAutoUpdateIsOn)
{
    server.answers[QStringLiteral("/feed")] = {200, feedOf("0.1.0")};
    Checking run(server.url(QStringLiteral("/feed")));
    run.checker.start();
    // Never checked before: at once.
    ASSERT_TRUE(waitFor([&] { return server.answered == 1 && run.finished(); }));
    EXPECT_DOUBLE_EQ(run.settings.lastUpdateCheck(), secondsOf(run.clock.now()));
    EXPECT_EQ(run.clock.pendingCount(), 1u);

    run.clock.advance(23h);
    QCoreApplication::processEvents();
    EXPECT_EQ(server.connections, 1);
    run.clock.advance(1h);
    // The answer must also have been read: a check still under way makes the button do nothing.
    ASSERT_TRUE(waitFor([&] { return server.answered == 2 && run.finished(); }));

    // Off: nothing is planned any more, yet the button still checks.
    run.settings.setAutoUpdate(false);
    EXPECT_EQ(run.clock.pendingCount(), 0u);
    run.clock.advance(72h);
    run.checker.checkNow();
    ASSERT_TRUE(waitFor([&] { return server.answered == 3; }));
    EXPECT_EQ(run.clock.pendingCount(), 0u);
}

TEST_F(UpdateCheckerTest, AfterARecentCheckTheNextWaitsForItsDay)
{
    server.answers[QStringLiteral("/feed")] = {200, feedOf("0.3.0")};
    ManualClock reference;
    Checking run(server.url(QStringLiteral("/feed")), true, secondsOf(reference.now()) - 2 * 3600);
    run.checker.start();
    QCoreApplication::processEvents();
    EXPECT_EQ(run.checker.state(), QStringLiteral("idle"));
    EXPECT_EQ(run.clock.pendingCount(), 1u);
    run.clock.advance(22h - 1s);
    QCoreApplication::processEvents();
    EXPECT_EQ(server.connections, 0);
    run.clock.advance(1s);
    ASSERT_TRUE(waitFor([&] { return run.finished(); }));
    EXPECT_EQ(run.checker.state(), QStringLiteral("available"));

    // Off at start: no check and no wake-up planned.
    Checking off(server.url(QStringLiteral("/feed")), false);
    off.checker.start();
    EXPECT_EQ(off.clock.pendingCount(), 0u);
    EXPECT_EQ(off.checker.state(), QStringLiteral("idle"));
}

TEST_F(UpdateCheckerTest, WithoutAFeedNothingIsEverRequested)
{
    Checking run{QUrl()};
    EXPECT_FALSE(run.checker.hasFeed());
    run.checker.start();
    run.checker.checkNow();
    run.settings.setAutoUpdate(false);
    run.settings.setAutoUpdate(true);
    EXPECT_EQ(run.checker.state(), QStringLiteral("idle"));
    EXPECT_EQ(run.clock.pendingCount(), 0u);
    EXPECT_DOUBLE_EQ(run.settings.lastUpdateCheck(), 0.0);
}

} // namespace
} // namespace navro
