#include "nowplaying/PlayerChoice.h"

#include <functional>
#include <gtest/gtest.h>

namespace navro {
namespace {

struct ChoiceCase {
    const char* name;
    std::function<void(PlayerChoice&)> events;
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
    GetParam().events(choice);
    EXPECT_EQ(choice.chosen(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, PlayerChoiceTest,
    ::testing::Values(ChoiceCase{"NoPlayerAtAll", [](PlayerChoice&) {}, std::nullopt},
                      ChoiceCase{"TheOnlyPlayerEvenWhenIdle",
                                 [](PlayerChoice& c) { c.appeared("a"); }, "a"},
                      ChoiceCase{"ThePlayingOneOverAnIdleNewcomer",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.appeared("b");
                                 },
                                 "a"},
                      ChoiceCase{"OfTwoPlayingTheOneThatStartedLast",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("b", true);
                                     c.setPlaying("a", true);
                                 },
                                 "a"},
                      ChoiceCase{"StartOrderNotNameOrder",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.setPlaying("b", true);
                                 },
                                 "b"},
                      ChoiceCase{"StillPlayingDoesNotCountAsStartingAgain",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.setPlaying("b", true);
                                     c.setPlaying("a", true);
                                 },
                                 "b"},
                      ChoiceCase{"PausingTheLatestHandsOverToTheOtherPlaying",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.setPlaying("b", true);
                                     c.setPlaying("b", false);
                                 },
                                 "a"},
                      ChoiceCase{"NonePlayingTheOneThatPlayedLast",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.setPlaying("b", true);
                                     c.setPlaying("b", false);
                                     c.setPlaying("a", false);
                                 },
                                 "a"},
                      ChoiceCase{"PlayedBeforeBeatsNeverPlayedThoughNewer",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.setPlaying("a", false);
                                     c.appeared("b");
                                 },
                                 "a"},
                      ChoiceCase{"NeverPlayedTheOneThatAppearedLast",
                                 [](PlayerChoice& c) {
                                     c.appeared("b");
                                     c.appeared("a");
                                 },
                                 "a"},
                      ChoiceCase{"TheReportedPlayerLeaves",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.setPlaying("b", true);
                                     c.vanished("b");
                                 },
                                 "a"},
                      ChoiceCase{"ComingBackStartsAfresh",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.setPlaying("b", true);
                                     c.vanished("a");
                                     c.setPlaying("a", true);
                                 },
                                 "a"},
                      ChoiceCase{"EveryPlayerLeft",
                                 [](PlayerChoice& c) {
                                     c.setPlaying("a", true);
                                     c.appeared("b");
                                     c.vanished("a");
                                     c.vanished("b");
                                 },
                                 std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace navro
