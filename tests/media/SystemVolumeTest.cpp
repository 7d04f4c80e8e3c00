#include "media/SystemVolume.h"

#include "FakeSound.h"
#include "QtTestApplication.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

// How often a signal was sent.
template <typename Signal> std::shared_ptr<int> count(SystemVolume& volume, Signal signal)
{
    auto counter = std::make_shared<int>(0);
    QObject::connect(&volume, signal, [counter] { ++*counter; });
    return counter;
}

struct Fixture {
    Fixture()
    {
        testApplication();
        outputs.state = {{{"speakers", "Built-in Speakers", 0.5, false, true},
                          {"hdmi", "HDMI Output", 0.8, true, true},
                          {"navro.bars", "Navro bars", 1.0, false, true}},
                         "speakers"};
        volume = std::make_unique<SystemVolume>(outputs);
    }

    FakeAudioOutputs outputs;
    std::unique_ptr<SystemVolume> volume;
};

TEST(SystemVolume, SetIsClampedAndShownAtOnce)
{
    struct Case {
        double asked, shown;
    };
    for (const Case c : {Case{1.3, 1.0}, Case{-0.2, 0.0}, Case{0.42, 0.42}}) {
        Fixture f;
        f.volume->set(c.asked);
        EXPECT_DOUBLE_EQ(f.volume->volume(), c.shown) << c.asked;
        ASSERT_EQ(f.outputs.requests.size(), 1u);
        EXPECT_EQ(f.outputs.requests[0].what, "volume");
        EXPECT_EQ(f.outputs.requests[0].id, "speakers");
        EXPECT_DOUBLE_EQ(f.outputs.requests[0].value, c.shown);
    }
}

// A set asks for the volume first and, on a muted output raised above zero, for the unmute
// after it; each step shows only what the system agreed to.
TEST(SystemVolume, ASetAsksForTheVolumeThenUnmutesWhatWasRaised)
{
    using Asked = std::pair<std::string, double>;
    struct Case {
        const char* what;
        bool muted;
        double set;
        std::vector<bool> answers;
        std::vector<Asked> asked;
        bool mutedAfter;
        double volumeAfter;
    };
    const Case cases[] = {
        {"a failed set goes back", false, 0.9, {false}, {{"volume", 0.9}}, false, 0.5},
        {"raised while muted", true, 0.7, {true, true}, {{"volume", 0.7}, {"mute", 0}}, false, 0.7},
        {"lowered to zero: not muted", false, 0, {true}, {{"volume", 0}}, false, 0},
        {"muted, lowered to zero", true, -1, {true}, {{"volume", 0}}, true, 0},
        {"the unmute fails", true, 0.6, {true, false}, {{"volume", 0.6}, {"mute", 0}}, true, 0.6},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Fixture f;
        f.outputs.state.outputs[0].muted = c.muted;
        f.outputs.publish();
        ASSERT_EQ(f.volume->isMuted(), c.muted);
        f.volume->set(c.set);
        std::vector<Asked> asked;
        for (bool succeeded : c.answers) {
            ASSERT_FALSE(f.outputs.requests.empty());
            asked.emplace_back(f.outputs.requests[0].what, f.outputs.requests[0].value);
            f.outputs.answer(succeeded);
        }
        EXPECT_EQ(asked, c.asked);
        EXPECT_TRUE(f.outputs.requests.empty());
        EXPECT_EQ(f.volume->isMuted(), c.mutedAfter);
        EXPECT_DOUBLE_EQ(f.volume->volume(), c.volumeAfter);
    }
}

TEST(SystemVolume, ToggleMuteChangesOnlyWhenTheSystemAgrees)
{
    Fixture f;
    f.volume->toggleMute();
    EXPECT_FALSE(f.volume->isMuted());
    f.outputs.answer(false);
    EXPECT_FALSE(f.volume->isMuted());
    f.volume->toggleMute();
    f.outputs.answer(true);
    EXPECT_TRUE(f.volume->isMuted());
    f.volume->toggleMute();
    EXPECT_EQ(f.outputs.requests[0].value, 0.0);
}

TEST(SystemVolume, SelectingAnOutputMakesItTheDefaultAndFollowsIt)
{
    Fixture f;
    const auto names = count(*f.volume, &SystemVolume::outputNameChanged);
    // Only a listed output is selected, by its exact name, and never Navro's own.
    for (const char* name : {"Gone Away", "Navro bars", "", "built-in speakers"})
        EXPECT_FALSE(f.volume->selectOutput(name)) << name;
    EXPECT_TRUE(f.outputs.requests.empty());
    EXPECT_EQ(f.volume->outputName(), "Built-in Speakers");

    EXPECT_TRUE(f.volume->selectOutput("HDMI Output"));
    ASSERT_EQ(f.outputs.requests.size(), 1u);
    EXPECT_EQ(f.outputs.requests[0].what, "default");
    EXPECT_EQ(f.outputs.requests[0].id, "hdmi");
    f.outputs.answer(true);
    EXPECT_EQ(f.volume->outputName(), "HDMI Output");
    EXPECT_DOUBLE_EQ(f.volume->volume(), 0.8);
    EXPECT_TRUE(f.volume->isMuted());
    EXPECT_EQ(*names, 1);
    // The controls now act on the new output.
    f.volume->set(0.3);
    EXPECT_EQ(f.outputs.requests[0].id, "hdmi");
}

TEST(SystemVolume, ShowsTheDefaultOutputAndItsChangesMadeElsewhereOnlyWhenReal)
{
    Fixture f;
    EXPECT_DOUBLE_EQ(f.volume->volume(), 0.5);
    EXPECT_FALSE(f.volume->isMuted());
    EXPECT_TRUE(f.volume->canSetVolume());
    EXPECT_EQ(f.volume->outputName(), "Built-in Speakers");
    // The others are listed, Navro's own is not.
    EXPECT_EQ(f.volume->outputs(), (QStringList{"Built-in Speakers", "HDMI Output"}));

    const auto volumes = count(*f.volume, &SystemVolume::volumeChanged);
    const auto changes = count(*f.volume, &SystemVolume::changed);
    f.outputs.publish();
    EXPECT_EQ(*changes, 0);
    f.outputs.state.outputs[0].volume = 0.25;
    f.outputs.publish();
    EXPECT_EQ(*volumes, 1);
    EXPECT_DOUBLE_EQ(f.volume->volume(), 0.25);
    // Another output's change is not this one's.
    f.outputs.state.outputs[1].volume = 0.1;
    f.outputs.publish();
    EXPECT_EQ(*volumes, 1);
    // Amplified past 100 %, it shows as full.
    f.outputs.state.outputs[0].volume = 1.5;
    f.outputs.publish();
    EXPECT_DOUBLE_EQ(f.volume->volume(), 1.0);
}

TEST(SystemVolume, NothingIsWrittenToAnOutputWithoutVolumeOrWithoutOutputs)
{
    Fixture f;
    f.outputs.state.outputs[0].canSetVolume = false;
    f.outputs.publish();
    EXPECT_FALSE(f.volume->canSetVolume());
    f.volume->set(0.9);
    EXPECT_TRUE(f.outputs.requests.empty());
    EXPECT_DOUBLE_EQ(f.volume->volume(), 0.5);

    f.outputs.state = {};
    f.outputs.publish();
    EXPECT_FALSE(f.volume->canSetVolume());
    EXPECT_TRUE(f.volume->outputName().isEmpty());
    EXPECT_TRUE(f.volume->outputs().isEmpty());
    f.volume->set(0.5);
    f.volume->toggleMute();
    EXPECT_TRUE(f.outputs.requests.empty());
}

} // namespace
} // namespace navro
