#include "data/TimerService.h"

#include "FakeSettingsStore.h"
#include "FakeTimerParts.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/Log.h"

#include <QDesktopServices>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

// Receives what the service asks the desktop to open.
class UrlRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

// A service over a manual clock, fresh settings and fakes of everything it drives.
class TimerServiceTest : public ::testing::Test {
protected:
    TimerServiceTest() : settings(store, [] { return QStringList{"en-GB"}; })
    {
        testApplication();
        settings.setFocusShortcutOn("focus on");
        settings.setFocusShortcutOff("focus off");
        service = std::make_unique<TimerService>(settings, clock, sleep, sound, shell,
                                                 shortcuts.path().toStdString());
        QObject::connect(service.get(), &TimerService::stateChanged, [this] { ++stateChanges; });
        QObject::connect(service.get(), &TimerService::countdownChanged,
                         [this] { ++countdownChanges; });
    }

    QString action(const char* name) const { return shortcuts.filePath(name); }

    FakeSettingsStore store;
    AppSettings settings;
    ManualClock clock;
    FakeSleepPreventer sleep;
    FakeSoundPlayer sound;
    RecordingShell shell;
    QTemporaryDir shortcuts;
    std::unique_ptr<TimerService> service;
    int stateChanges = 0;
    int countdownChanges = 0;
};

TEST_F(TimerServiceTest, StartRunsTheCountdownPublishedOnceASecondAndRemembersTheLength)
{
    EXPECT_EQ(service->stateRaw(), "idle");
    EXPECT_EQ(clock.pendingCount(), 0u) << "idle wakes nothing";

    ASSERT_TRUE(service->start(5, false));
    EXPECT_EQ(service->stateRaw(), "running");
    EXPECT_EQ(service->total(), 300);
    EXPECT_EQ(service->clockText(), "5:00");
    EXPECT_EQ(settings.lastTimerMinutes(), 5);
    EXPECT_EQ(sleep.holds, 1) << "plain timers keep the display awake by default";
    EXPECT_TRUE(shell.runs.isEmpty()) << "a plain timer runs no focus action";
    EXPECT_EQ(stateChanges, 1);

    const int atStart = countdownChanges;
    clock.advance(90s); // 360 ticks
    EXPECT_EQ(countdownChanges - atStart, 90);
    EXPECT_EQ(service->clockText(), "3:30");
    EXPECT_DOUBLE_EQ(service->shownProgress(), 0.3);
    EXPECT_EQ(service->remaining(clock.now()), 210);
    EXPECT_EQ(stateChanges, 1) << "the seconds going by are no change of state";
}

TEST_F(TimerServiceTest, RefusesLengthsOutsideADay)
{
    CapturingLogSink log;
    for (double minutes : {0.0, -5.0, 1440.5, std::nan("")})
        EXPECT_FALSE(service->start(minutes, true)) << minutes;
    EXPECT_EQ(service->stateRaw(), "idle");
    EXPECT_EQ(settings.lastTimerMinutes(), 25) << "the default is kept";
    EXPECT_EQ(sleep.mostHolds, 0);
    EXPECT_TRUE(shell.runs.isEmpty());
    EXPECT_EQ(log.lines.size(), 4u);
    EXPECT_TRUE(service->start(1440, false)) << "a whole day is the longest";
}

TEST_F(TimerServiceTest, OffersTheLastLengthWhenATimerCanHaveIt)
{
    int offers = 0;
    QObject::connect(service.get(), &TimerService::lastMinutesChanged, [&] { ++offers; });
    ASSERT_TRUE(service->start(5, false));
    EXPECT_EQ(service->lastMinutes(), 5);
    EXPECT_EQ(offers, 1);

    // A stored length no timer can have (a hand-edited file, say) offers the default instead,
    // and says so once however often it is read.
    CapturingLogSink log;
    settings.setLastTimerMinutes(1e308);
    EXPECT_EQ(service->lastMinutes(), 25);
    EXPECT_EQ(service->lastMinutes(), 25);
    EXPECT_EQ(settings.lastTimerMinutes(), 1e308) << "the settings keep what they were given";
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_NE(log.lines[0].find("\"lastTimerMinutes\" is 1e+308"), std::string::npos)
        << log.lines[0];
    EXPECT_EQ(offers, 2);
}

TEST_F(TimerServiceTest, TicksOnlyWhileRunningAndDismissLeavesOnlyFinishedEarly)
{
    service->dismiss();
    EXPECT_EQ(stateChanges, 0);
    service->start(5, false);
    EXPECT_EQ(clock.pendingCount(), 1u);
    service->dismiss();
    EXPECT_EQ(service->stateRaw(), "running") << "only a finished session is dismissed";
    service->pause();
    EXPECT_EQ(clock.pendingCount(), 0u) << "paused wakes nothing";
    service->resume();
    EXPECT_EQ(clock.pendingCount(), 1u);
    clock.advance(5min);
    EXPECT_EQ(service->stateRaw(), "finished");
    EXPECT_EQ(clock.pendingCount(), 1u) << "only the return to idle";
    service->dismiss();
    EXPECT_EQ(service->stateRaw(), "idle");
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(TimerServiceTest, AMinuteMoreWhilePausedAtHalfAMinuteOfFive)
{
    service->start(5, false);
    clock.advance(270s);
    service->pause();
    EXPECT_EQ(service->clockText(), "0:30");
    const int before = stateChanges;
    service->addMinute();
    EXPECT_EQ(service->clockText(), "1:30");
    EXPECT_EQ(service->total(), 360);
    EXPECT_EQ(stateChanges, before + 1) << "listeners hear of the new length";

    // Resumed an hour later, it counts on from 1:30.
    clock.advance(1h);
    service->resume();
    EXPECT_EQ(service->clockText(), "1:30");
    clock.advance(89s);
    EXPECT_EQ(service->stateRaw(), "running");
    clock.advance(1s);
    EXPECT_EQ(service->stateRaw(), "finished");
}

TEST_F(TimerServiceTest, AMinuteMoreWhileRunningMovesTheEnd)
{
    service->start(1, false);
    clock.advance(50s);
    service->addMinute();
    EXPECT_EQ(service->total(), 120);
    clock.advance(60s);
    EXPECT_EQ(service->stateRaw(), "running");
    EXPECT_EQ(service->clockText(), "0:10");
    // Nothing to lengthen once it is over.
    clock.advance(10s);
    service->addMinute();
    EXPECT_EQ(service->stateRaw(), "finished");
}

TEST_F(TimerServiceTest, FinishingEndsTheSessionRingsAndReturnsToIdle)
{
    service->start(1, true);
    EXPECT_EQ(shell.runs, QStringList{action("focus on")});
    clock.advance(59750ms);
    EXPECT_EQ(service->stateRaw(), "running");
    clock.advance(250ms);
    EXPECT_EQ(service->stateRaw(), "finished");
    EXPECT_EQ(service->shownProgress(), 1);
    EXPECT_EQ(sound.played, std::vector<std::string>{"complete"});
    EXPECT_EQ(sleep.holds, 0);
    EXPECT_EQ(shell.runs, (QStringList{action("focus on"), action("focus off")}));

    clock.advance(7999ms);
    EXPECT_EQ(service->stateRaw(), "finished");
    clock.advance(1ms);
    EXPECT_EQ(service->stateRaw(), "idle");
    EXPECT_FALSE(service->isFocus());
    EXPECT_EQ(sound.played.size(), 1u);
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(TimerServiceTest, NoSoundWhenTheSettingIsOff)
{
    settings.setTimerSound(false);
    service->start(0.5, false);
    clock.advance(31s);
    EXPECT_EQ(service->stateRaw(), "finished");
    EXPECT_TRUE(sound.played.empty());
}

TEST_F(TimerServiceTest, StoppingEndsTheSessionAtOnceWithoutTheSound)
{
    for (bool pausedFirst : {false, true}) {
        shell.runs.clear();
        service->start(5, true);
        clock.advance(1min);
        if (pausedFirst)
            service->pause();
        service->stop();
        EXPECT_EQ(service->stateRaw(), "idle") << "no finished state after a stop";
        EXPECT_EQ(service->clockText(), "0:00");
        EXPECT_TRUE(sound.played.empty());
        EXPECT_EQ(sleep.holds, 0);
        EXPECT_EQ(shell.runs, (QStringList{action("focus on"), action("focus off")}));
        EXPECT_EQ(clock.pendingCount(), 0u);
    }
}

TEST_F(TimerServiceTest, ANewSessionDuringFinishedIsNotUndoneByThePendingReset)
{
    service->start(1, false);
    clock.advance(1min);
    ASSERT_EQ(service->stateRaw(), "finished");
    clock.advance(3s);
    service->start(1, false);
    clock.advance(6s); // past the first session's reset
    EXPECT_EQ(service->stateRaw(), "running");
    EXPECT_EQ(service->clockText(), "0:54");
}

TEST_F(TimerServiceTest, SessionsInARowNeverHoldTwiceAndSwitchFocusOnlyWhereTheyDiffer)
{
    service->start(5, true);  // on
    service->start(10, true); // still focused: nothing
    service->start(1, false); // off
    service->pause();
    service->start(5, false); // nothing
    service->start(3, true);  // on
    clock.advance(3min);      // finished: off
    service->start(2, false); // nothing
    service->stop();
    EXPECT_EQ(shell.runs, (QStringList{action("focus on"), action("focus off"), action("focus on"),
                                       action("focus off")}));
    EXPECT_EQ(sleep.mostHolds, 1);
    EXPECT_EQ(sleep.holds, 0);
}

TEST_F(TimerServiceTest, FocusActionsAreOptionalAndStayInTheirFolder)
{
    CapturingLogSink log;
    settings.setFocusShortcutOn("");
    settings.setFocusShortcutOff("../../bin/sh");
    service->start(5, true);
    service->stop();
    EXPECT_TRUE(shell.runs.isEmpty());
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("is not the name of a file in"));
}

TEST_F(TimerServiceTest, AFailedFocusActionIsLoggedAndChangesNothing)
{
    CapturingLogSink log;
    service->start(5, true);
    shell.answerAll(std::nullopt);
    EXPECT_EQ(service->stateRaw(), "running");
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("\"focus on\" could not be run")) << log.lines[0];
}

TEST_F(TimerServiceTest, KeepAwakeFollowsTheSettingForPlainTimersAndAlwaysHoldsForFocus)
{
    settings.setTimerKeepAwake(false);
    service->start(5, false);
    EXPECT_EQ(sleep.holds, 0);
    settings.setTimerKeepAwake(true); // changed during the session: applies at once
    EXPECT_EQ(sleep.holds, 1);
    settings.setTimerKeepAwake(false);
    EXPECT_EQ(sleep.holds, 0);
    service->start(5, true);
    EXPECT_EQ(sleep.holds, 1) << "a focus session always keeps the display awake";
    service->pause();
    EXPECT_EQ(sleep.holds, 1) << "held until the session ends";
    service->stop();
    EXPECT_EQ(sleep.holds, 0);
    settings.setTimerKeepAwake(true);
    EXPECT_EQ(sleep.holds, 0) << "no session, nothing to keep awake for";
}

TEST_F(TimerServiceTest, ShutDownEndsAFocusSessionAndLetsTheDisplaySleep)
{
    service->start(25, true);
    clock.advance(1min);
    service->shutDown();
    EXPECT_EQ(service->stateRaw(), "idle");
    EXPECT_EQ(sleep.holds, 0);
    EXPECT_EQ(shell.runs.last(), action("focus off"));
    EXPECT_EQ(clock.pendingCount(), 0u);
    EXPECT_TRUE(sound.played.empty());
}

TEST_F(TimerServiceTest, AnHourShowsHoursThenDropsToMinutesInTheLanguagesDigits)
{
    service->start(60, false);
    EXPECT_EQ(service->clockText(), "1:00:00");
    const int before = countdownChanges;
    settings.setLanguage(AppLanguage::arabic);
    EXPECT_GT(countdownChanges, before) << "the text is redrawn in the new digits";
    EXPECT_EQ(service->clockText(), QString::fromUtf8("١:٠٠:٠٠"));
    EXPECT_EQ(service->clock(754), QString::fromUtf8("١٢:٣٤"));
    clock.advance(1s);
    EXPECT_EQ(service->clockText(), QString::fromUtf8("٥٩:٥٩"));
}

TEST_F(TimerServiceTest, LoadsTheFocusActionsInTheBackground)
{
    for (const char* name : {"zen", "Away"}) {
        QFile file(action(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }
    service->loadShortcuts();
    ASSERT_TRUE(waitFor([&] { return !service->shortcuts().isEmpty(); }));
    EXPECT_EQ(service->shortcuts(), (QStringList{"Away", "zen"}));
}

TEST_F(TimerServiceTest, OpensTheFolderOfFocusActionsCreatingItFirst)
{
    const QString folder = shortcuts.filePath("Navro/Shortcuts");
    TimerService service(settings, clock, sleep, sound, shell, folder.toStdString());
    UrlRecorder recorder;
    QDesktopServices::setUrlHandler("file", &recorder, "open");
    service.openShortcutsApp();
    QDesktopServices::unsetUrlHandler("file");

    EXPECT_EQ(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(folder)});
    EXPECT_TRUE(std::filesystem::is_directory(folder.toStdString()));
    EXPECT_EQ(permissionsOf(folder.toStdString()), 0700u);
}

} // namespace
} // namespace navro

#include "TimerServiceTest.moc"
