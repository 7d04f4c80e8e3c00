#include "nowplaying/PlayerChoice.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace navro {
namespace {

struct ChoiceCase {
    const char* name;
    // What the bus tells, in order: "appear a", "play a", "pause a" or "vanish a".
    std::vector<std::string> events;
    std::optional<std::string> expected;
};

void PrintTo(const ChoiceCase& c, std::ostream* out)
{
    *out << c.name;
}

class PlayerChoiceTest : public ::testing::TestWithParam<ChoiceCase> {};

TEST_P(PlayerChoiceTest, ReportsTheRightPlayer)
{
    PlayerChoice choice;
    for (const std::string& event : GetParam().events) {
        const std::string verb = event.substr(0, event.find(' '));
        const std::string player = event.substr(event.find(' ') + 1);
        if (verb == "appear")
            choice.appeared(player);
        else if (verb == "play" || verb == "pause")
            choice.setPlaying(player, verb == "play");
        else if (verb == "vanish")
            choice.vanished(player);
        else
            FAIL() << "no such event: " << event;
    }
    EXPECT_EQ(choice.chosen(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, PlayerChoiceTest,
    ::testing::Values(
        ChoiceCase{"NoPlayerAtAll", {}, std::nullopt},
        ChoiceCase{"TheOnlyPlayerEvenWhenIdle", {"appear a"}, "a"},
        ChoiceCase{"ThePlayingOneOverAnIdleNewcomer", {"play a", "appear b"}, "a"},
        ChoiceCase{"OfTwoPlayingTheOneThatStartedLast", {"play b", "play a"}, "a"},
        ChoiceCase{"StartOrderNotNameOrder", {"play a", "play b"}, "b"},
        ChoiceCase{"StillPlayingDoesNotCountAsStartingAgain", {"play a", "play b", "play a"}, "b"},
        ChoiceCase{
            "PausingTheLatestHandsOverToTheOtherPlaying", {"play a", "play b", "pause b"}, "a"},
        ChoiceCase{
            "NonePlayingTheOneThatPlayedLast", {"play a", "play b", "pause b", "pause a"}, "a"},
        ChoiceCase{
            "PlayedBeforeBeatsNeverPlayedThoughNewer", {"play a", "pause a", "appear b"}, "a"},
        ChoiceCase{"NeverPlayedTheOneThatAppearedLast", {"appear b", "appear a"}, "a"},
        ChoiceCase{"TheReportedPlayerLeaves", {"play a", "play b", "vanish b"}, "a"},
        ChoiceCase{"ComingBackStartsAfresh", {"play a", "play b", "vanish a", "play a"}, "a"},
        ChoiceCase{
            "EveryPlayerLeft", {"play a", "appear b", "vanish a", "vanish b"}, std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace navro
