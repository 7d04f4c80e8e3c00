#include "media/AudioBars.h"

#include "FakeSettingsStore.h"
#include "FakeSound.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "app/AppSettings.h"
#include "app/Log.h"

#include <QThread>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <thread>

namespace navro {
namespace {

using namespace std::chrono_literals;

struct Fixture {
    Fixture() : settings(store, [] { return QStringList{"en-GB"}; }) { testApplication(); }

    // What the capture would deliver: a loud tone, enough for several frames.
    void feedTone()
    {
        std::vector<float> tone(4096);
        for (std::size_t i = 0; i < tone.size(); ++i)
            tone[i] = 0.5f * float(std::sin(2 * std::numbers::pi * 440 * i / 48000));
        bars.analyzer().process(tone.data(), tone.size(), 1);
    }
    void feedSilence()
    {
        const std::vector<float> silence(4096, 0.0f);
        bars.analyzer().process(silence.data(), silence.size(), 1);
    }

    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings;
    FakeSystemAudio audio;
    AudioBars bars{clock, settings, audio};
};

TEST(AudioBars, ListensOnlyFromWhenMusicPlaysToFiveSecondsAfter)
{
    Fixture f;
    f.clock.advance(1min);
    EXPECT_EQ(f.audio.started, 0);
    EXPECT_FALSE(f.bars.isListening());
    EXPECT_TRUE(f.bars.liveLevels(4).empty());

    f.bars.setPlaying(true);
    EXPECT_EQ(f.audio.started, 1);
    EXPECT_EQ(f.audio.live, 1);
    EXPECT_TRUE(f.bars.isListening());
    // A pause shorter than five seconds keeps the same tap.
    f.bars.setPlaying(false);
    f.clock.advance(3s);
    f.bars.setPlaying(true);
    f.clock.advance(1min);
    EXPECT_EQ(f.audio.started, 1);
    EXPECT_EQ(f.audio.live, 1);

    f.bars.setPlaying(false);
    f.clock.advance(4999ms);
    EXPECT_EQ(f.audio.live, 1);
    f.clock.advance(1ms);
    EXPECT_EQ(f.audio.live, 0);
    EXPECT_FALSE(f.bars.isListening());
}

TEST(AudioBars, TheSettingTurnsListeningOffAndOn)
{
    Fixture f;
    f.settings.setBarsFollowSound(false);
    f.bars.setPlaying(true);
    EXPECT_EQ(f.audio.started, 0);
    f.settings.setBarsFollowSound(true);
    EXPECT_EQ(f.audio.live, 1);
    f.settings.setBarsFollowSound(false);
    f.clock.advance(5s);
    EXPECT_EQ(f.audio.live, 0);
}

TEST(AudioBars, WithoutASoundServerNoTapIsEverMade)
{
    Fixture f;
    f.audio.listenable = false;
    f.bars.setPlaying(true);
    f.settings.setBarsFollowSound(false);
    f.settings.setBarsFollowSound(true);
    EXPECT_EQ(f.audio.started, 0);
    EXPECT_TRUE(f.bars.liveLevels(4).empty());
}

TEST(AudioBars, TapFailuresAreLoggedAndDropTheTapUntilTheNextChange)
{
    Fixture f;
    CapturingLogSink log;
    f.audio.failAtOnce = SystemAudio::TapError{"Start", -3};
    f.bars.setPlaying(true);
    EXPECT_FALSE(f.bars.isListening());
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0], "Navro bars: could not listen to system audio: Start failed (-3)");

    f.audio.failAtOnce.reset();
    f.bars.setPlaying(false);
    f.bars.setPlaying(true);
    EXPECT_EQ(f.audio.started, 2);
    EXPECT_TRUE(f.bars.isListening());

    // A later failure drops the tap and the live levels.
    f.feedTone();
    ASSERT_FALSE(f.bars.liveLevels(4).empty());
    f.audio.latest->failed({"Read format", 7});
    EXPECT_FALSE(f.bars.isListening());
    EXPECT_EQ(f.audio.live, 0);
    EXPECT_TRUE(f.bars.liveLevels(4).empty());
    EXPECT_TRUE(log.contains("Read format failed (7)"));
}

TEST(AudioBars, ATapThatHasNotHeardSoundLeavesTheBarsToTheirOwnMotion)
{
    Fixture f;
    f.bars.setPlaying(true);
    f.feedSilence();
    EXPECT_TRUE(f.bars.liveLevels(4).empty());

    f.feedTone();
    const std::vector<float> levels = f.bars.liveLevels(4);
    ASSERT_EQ(levels.size(), 4u);
    // The tone lies in the second quarter of the bands.
    EXPECT_GT(levels[1], 0.5f);
    // Once sound was heard, silence is shown as live levels at rest rather than as motion.
    f.feedSilence();
    EXPECT_EQ(f.bars.liveLevels(4).size(), 4u);
}

TEST(AudioBars, TheViewsHearOfLevelsOnTheirThreadOnlyWhenTheyMoveVisibly)
{
    Fixture f;
    int changes = 0;
    bool onThisThread = true;
    QObject::connect(&f.bars, &AudioBars::levelsChanged, [&] {
        ++changes;
        onThisThread = onThisThread && QThread::currentThread() == f.bars.thread();
    });
    f.bars.setPlaying(true);
    ASSERT_TRUE(f.audio.lastAnalysed);
    // The capture's thread analyses and reports; the signal arrives on this one.
    const auto captureBatch = [&f](auto&& feed) {
        std::thread capture([&] {
            feed();
            f.audio.lastAnalysed();
        });
        capture.join();
        QCoreApplication::processEvents();
    };
    captureBatch([&f] { f.feedTone(); });
    EXPECT_EQ(changes, 1);
    // The same tone again, once settled: no news, no wake-up.
    for (int batch = 0; batch < 20; ++batch)
        captureBatch([&f] { f.feedTone(); });
    const int settled = changes;
    captureBatch([&f] { f.feedTone(); });
    EXPECT_EQ(changes, settled);
    // The sound stops: the bars fall, and they are told.
    captureBatch([&f] { f.feedSilence(); });
    EXPECT_EQ(changes, settled + 1);
    EXPECT_TRUE(onThisThread);
}

TEST(AudioBars, ANewTapStartsFromAResetAnalyser)
{
    Fixture f;
    f.bars.setPlaying(true);
    f.feedTone();
    f.bars.setPlaying(false);
    f.clock.advance(5s);
    f.bars.setPlaying(true);
    EXPECT_FALSE(f.bars.analyzer().heardSound());
    EXPECT_TRUE(f.bars.liveLevels(4).empty());
}

TEST(AudioBars, AnotherDefaultOutputRebuildsTheTapWhileWanted)
{
    Fixture f;
    f.bars.setPlaying(true);
    f.audio.defaultOutputChanged();
    EXPECT_EQ(f.audio.started, 2);
    EXPECT_EQ(f.audio.latest->serial, 2);
    EXPECT_EQ(f.audio.live, 1);

    // During the wait before stopping, the change only stops it early.
    f.bars.setPlaying(false);
    f.audio.defaultOutputChanged();
    EXPECT_EQ(f.audio.live, 0);
    EXPECT_EQ(f.audio.started, 2);
    f.clock.advance(10s);
    EXPECT_EQ(f.audio.started, 2);
}

TEST(AudioBars, ShutDownStopsTheTapForGood)
{
    Fixture f;
    f.bars.setPlaying(true);
    f.bars.shutDown();
    EXPECT_EQ(f.audio.live, 0);
    f.bars.setPlaying(false);
    f.bars.setPlaying(true);
    EXPECT_EQ(f.audio.started, 1);
}

} // namespace
} // namespace navro
