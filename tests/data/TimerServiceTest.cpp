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
struct Fixture {
    Fixture() : settings(store, [] { return QStringList{"en-GB"}; })
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

TEST(TimerService, StartRunsTheCountdownAndRemembersTheLength)
{
    Fixture f;
    EXPECT_EQ(f.service->stateRaw(), "idle");
    EXPECT_EQ(f.clock.pendingCount(), 0u) << "idle wakes nothing";

    ASSERT_TRUE(f.service->start(5, false));
    EXPECT_EQ(f.service->stateRaw(), "running");
    EXPECT_EQ(f.service->total(), 300);
    EXPECT_EQ(f.service->clockText(), "5:00");
    EXPECT_EQ(f.settings.lastTimerMinutes(), 5);
    EXPECT_EQ(f.sleep.holds, 1) << "plain timers keep the display awake by default";
    EXPECT_TRUE(f.shell.runs.isEmpty()) << "a plain timer runs no focus action";
    EXPECT_EQ(f.stateChanges, 1);

    f.clock.advance(90s);
    EXPECT_EQ(f.service->clockText(), "3:30");
    EXPECT_DOUBLE_EQ(f.service->shownProgress(), 0.3);
    EXPECT_EQ(f.service->remaining(f.clock.now()), 210);
    EXPECT_EQ(f.stateChanges, 1) << "the seconds going by are no change of state";
}

TEST(TimerService, RefusesLengthsOutsideADay)
{
    Fixture f;
    CapturingLogSink log;
    for (double minutes : {0.0, -5.0, 1440.5, std::nan("")})
        EXPECT_FALSE(f.service->start(minutes, true)) << minutes;
    EXPECT_EQ(f.service->stateRaw(), "idle");
    EXPECT_EQ(f.settings.lastTimerMinutes(), 25) << "the default is kept";
    EXPECT_EQ(f.sleep.mostHolds, 0);
    EXPECT_TRUE(f.shell.runs.isEmpty());
    EXPECT_EQ(log.lines.size(), 4u);
    EXPECT_TRUE(f.service->start(1440, false)) << "a whole day is the longest";
}

TEST(TimerService, OffersTheLastLengthWhenATimerCanHaveIt)
{
    Fixture f;
    int offers = 0;
    QObject::connect(f.service.get(), &TimerService::lastMinutesChanged, [&] { ++offers; });
    ASSERT_TRUE(f.service->start(5, false));
    EXPECT_EQ(f.service->lastMinutes(), 5);
    EXPECT_EQ(offers, 1);

    // A stored length no timer can have (a hand-edited file, say) offers the default instead,
    // and says so once however often it is read.
    CapturingLogSink log;
    f.settings.setLastTimerMinutes(1e308);
    EXPECT_EQ(f.service->lastMinutes(), 25);
    EXPECT_EQ(f.service->lastMinutes(), 25);
    EXPECT_EQ(f.settings.lastTimerMinutes(), 1e308) << "the settings keep what they were given";
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_NE(log.lines[0].find("\"lastTimerMinutes\" is 1e+308"), std::string::npos)
        << log.lines[0];
    EXPECT_EQ(offers, 2);
}

TEST(TimerService, AnHourShowsHoursThenDropsToMinutes)
{
    Fixture f;
    f.service->start(60, false);
    EXPECT_EQ(f.service->clockText(), "1:00:00");
    f.clock.advance(1s);
    EXPECT_EQ(f.service->clockText(), "59:59");
}

TEST(TimerService, TheCountdownIsPublishedOnceASecondNotOnEveryTick)
{
    Fixture f;
    f.service->start(10, false);
    const int atStart = f.countdownChanges;
    f.clock.advance(10s); // forty ticks
    EXPECT_EQ(f.countdownChanges - atStart, 10);
    EXPECT_EQ(f.service->clockText(), "9:50");
}

TEST(TimerService, TicksOnlyWhileRunning)
{
    Fixture f;
    f.service->start(5, false);
    EXPECT_EQ(f.clock.pendingCount(), 1u);
    f.service->pause();
    EXPECT_EQ(f.clock.pendingCount(), 0u) << "paused wakes nothing";
    f.service->resume();
    EXPECT_EQ(f.clock.pendingCount(), 1u);
    f.clock.advance(5min);
    EXPECT_EQ(f.service->stateRaw(), "finished");
    EXPECT_EQ(f.clock.pendingCount(), 1u) << "only the return to idle";
    f.clock.advance(8s);
    EXPECT_EQ(f.service->stateRaw(), "idle");
    EXPECT_EQ(f.clock.pendingCount(), 0u);
}

TEST(TimerService, AMinuteMoreWhilePausedAtHalfAMinuteOfFive)
{
    Fixture f;
    f.service->start(5, false);
    f.clock.advance(270s);
    f.service->pause();
    EXPECT_EQ(f.service->clockText(), "0:30");
    const int before = f.stateChanges;
    f.service->addMinute();
    EXPECT_EQ(f.service->clockText(), "1:30");
    EXPECT_EQ(f.service->total(), 360);
    EXPECT_EQ(f.stateChanges, before + 1) << "listeners hear of the new length";

    // Resumed an hour later, it counts on from 1:30.
    f.clock.advance(1h);
    f.service->resume();
    EXPECT_EQ(f.service->clockText(), "1:30");
    f.clock.advance(89s);
    EXPECT_EQ(f.service->stateRaw(), "running");
    f.clock.advance(1s);
    EXPECT_EQ(f.service->stateRaw(), "finished");
}

TEST(TimerService, AMinuteMoreWhileRunningMovesTheEnd)
{
    Fixture f;
    f.service->start(1, false);
    f.clock.advance(50s);
    f.service->addMinute();
    EXPECT_EQ(f.service->total(), 120);
    f.clock.advance(60s);
    EXPECT_EQ(f.service->stateRaw(), "running");
    EXPECT_EQ(f.service->clockText(), "0:10");
    // Nothing to lengthen once it is over.
    f.clock.advance(10s);
    f.service->addMinute();
    EXPECT_EQ(f.service->stateRaw(), "finished");
}

TEST(TimerService, FinishingEndsTheSessionRingsAndReturnsToIdle)
{
    Fixture f;
    f.service->start(1, true);
    EXPECT_EQ(f.shell.runs, QStringList{f.action("focus on")});
    f.clock.advance(59750ms);
    EXPECT_EQ(f.service->stateRaw(), "running");
    f.clock.advance(250ms);
    EXPECT_EQ(f.service->stateRaw(), "finished");
    EXPECT_EQ(f.service->shownProgress(), 1);
    EXPECT_EQ(f.sound.played, std::vector<std::string>{"complete"});
    EXPECT_EQ(f.sleep.holds, 0);
    EXPECT_EQ(f.shell.runs, (QStringList{f.action("focus on"), f.action("focus off")}));

    f.clock.advance(7999ms);
    EXPECT_EQ(f.service->stateRaw(), "finished");
    f.clock.advance(1ms);
    EXPECT_EQ(f.service->stateRaw(), "idle");
    EXPECT_FALSE(f.service->isFocus());
    EXPECT_EQ(f.sound.played.size(), 1u);
}

TEST(TimerService, NoSoundWhenTheSettingIsOff)
{
    Fixture f;
    f.settings.setTimerSound(false);
    f.service->start(0.5, false);
    f.clock.advance(31s);
    EXPECT_EQ(f.service->stateRaw(), "finished");
    EXPECT_TRUE(f.sound.played.empty());
}

TEST(TimerService, StoppingEndsTheSessionAtOnceWithoutTheSound)
{
    for (bool pausedFirst : {false, true}) {
        Fixture f;
        f.service->start(5, true);
        f.clock.advance(1min);
        if (pausedFirst)
            f.service->pause();
        f.service->stop();
        EXPECT_EQ(f.service->stateRaw(), "idle") << "no finished state after a stop";
        EXPECT_EQ(f.service->clockText(), "0:00");
        EXPECT_TRUE(f.sound.played.empty());
        EXPECT_EQ(f.sleep.holds, 0);
        EXPECT_EQ(f.shell.runs, (QStringList{f.action("focus on"), f.action("focus off")}));
        EXPECT_EQ(f.clock.pendingCount(), 0u);
    }
}

TEST(TimerService, ANewSessionDuringFinishedIsNotUndoneByThePendingReset)
{
    Fixture f;
    f.service->start(1, false);
    f.clock.advance(1min);
    ASSERT_EQ(f.service->stateRaw(), "finished");
    f.clock.advance(3s);
    f.service->start(1, false);
    f.clock.advance(6s); // past the first session's reset
    EXPECT_EQ(f.service->stateRaw(), "running");
    EXPECT_EQ(f.service->clockText(), "0:54");
}

TEST(TimerService, DismissLeavesFinishedEarly)
{
    Fixture f;
    f.service->dismiss();
    EXPECT_EQ(f.stateChanges, 0);
    f.service->start(1, false);
    f.service->dismiss();
    EXPECT_EQ(f.service->stateRaw(), "running") << "only a finished session is dismissed";
    f.clock.advance(1min);
    f.service->dismiss();
    EXPECT_EQ(f.service->stateRaw(), "idle");
    EXPECT_EQ(f.clock.pendingCount(), 0u);
}

TEST(TimerService, SessionsInARowNeverHoldTwice)
{
    Fixture f;
    f.service->start(5, false);
    f.service->start(10, true);
    f.service->start(1, false);
    f.service->pause();
    f.service->start(3, true);
    f.clock.advance(3min);
    f.service->start(2, false);
    f.service->stop();
    EXPECT_EQ(f.sleep.mostHolds, 1);
    EXPECT_EQ(f.sleep.holds, 0);
}

TEST(TimerService, FocusIsSwitchedOnlyWhereTheNextSessionDiffers)
{
    Fixture f;
    f.service->start(5, true);  // on
    f.service->start(10, true); // still focused: nothing
    f.service->start(5, false); // off
    f.service->start(5, false); // nothing
    f.service->start(5, true);  // on
    f.service->stop();          // off
    EXPECT_EQ(f.shell.runs, (QStringList{f.action("focus on"), f.action("focus off"),
                                         f.action("focus on"), f.action("focus off")}));
}

TEST(TimerService, FocusActionsAreOptionalAndStayInTheirFolder)
{
    Fixture f;
    CapturingLogSink log;
    f.settings.setFocusShortcutOn("");
    f.settings.setFocusShortcutOff("../../bin/sh");
    f.service->start(5, true);
    f.service->stop();
    EXPECT_TRUE(f.shell.runs.isEmpty());
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("is not the name of a file in"));
}

TEST(TimerService, AFailedFocusActionIsLoggedAndChangesNothing)
{
    Fixture f;
    CapturingLogSink log;
    f.service->start(5, true);
    f.shell.answerAll(std::nullopt);
    EXPECT_EQ(f.service->stateRaw(), "running");
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("\"focus on\" could not be run")) << log.lines[0];
}

TEST(TimerService, KeepAwakeFollowsTheSettingForPlainTimersAndAlwaysHoldsForFocus)
{
    Fixture f;
    f.settings.setTimerKeepAwake(false);
    f.service->start(5, false);
    EXPECT_EQ(f.sleep.holds, 0);
    f.settings.setTimerKeepAwake(true); // changed during the session: applies at once
    EXPECT_EQ(f.sleep.holds, 1);
    f.settings.setTimerKeepAwake(false);
    EXPECT_EQ(f.sleep.holds, 0);
    f.service->start(5, true);
    EXPECT_EQ(f.sleep.holds, 1) << "a focus session always keeps the display awake";
    f.service->pause();
    EXPECT_EQ(f.sleep.holds, 1) << "held until the session ends";
    f.service->stop();
    EXPECT_EQ(f.sleep.holds, 0);
    f.settings.setTimerKeepAwake(true);
    EXPECT_EQ(f.sleep.holds, 0) << "no session, nothing to keep awake for";
}

TEST(TimerService, ShutDownEndsAFocusSessionAndLetsTheDisplaySleep)
{
    Fixture f;
    f.service->start(25, true);
    f.clock.advance(1min);
    f.service->shutDown();
    EXPECT_EQ(f.service->stateRaw(), "idle");
    EXPECT_EQ(f.sleep.holds, 0);
    EXPECT_EQ(f.shell.runs.last(), f.action("focus off"));
    EXPECT_EQ(f.clock.pendingCount(), 0u);
    EXPECT_TRUE(f.sound.played.empty());
}

TEST(TimerService, ClockTextUsesArabicDigitsInArabic)
{
    Fixture f;
    f.service->start(60, false);
    const int before = f.countdownChanges;
    f.settings.setLanguage(AppLanguage::arabic);
    EXPECT_GT(f.countdownChanges, before) << "the text is redrawn in the new digits";
    EXPECT_EQ(f.service->clockText(), QString::fromUtf8("١:٠٠:٠٠"));
    EXPECT_EQ(f.service->clock(754), QString::fromUtf8("١٢:٣٤"));
}

TEST(TimerService, LoadsTheFocusActionsInTheBackground)
{
    Fixture f;
    for (const char* name : {"zen", "Away"}) {
        QFile file(f.action(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }
    f.service->loadShortcuts();
    ASSERT_TRUE(waitFor([&] { return !f.service->shortcuts().isEmpty(); }));
    EXPECT_EQ(f.service->shortcuts(), (QStringList{"Away", "zen"}));
}

TEST(TimerService, OpensTheFolderOfFocusActionsCreatingItFirst)
{
    Fixture f;
    const QString folder = f.shortcuts.filePath("Navro/Shortcuts");
    TimerService service(f.settings, f.clock, f.sleep, f.sound, f.shell, folder.toStdString());
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
