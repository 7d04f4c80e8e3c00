#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using Action = CommandLine::Action;

TEST(CommandLine, AnswersHelpAndVersionAndRefusesEverythingElse)
{
    struct Case {
        std::vector<std::string_view> arguments;
        Action action;
        std::string problem;
    };
    const std::vector<Case> cases{
        {{}, Action::run, ""},
        {{"--help"}, Action::showHelp, ""},
        {{"-h"}, Action::showHelp, ""},
        {{"--version"}, Action::showVersion, ""},
        {{"-v"}, Action::showVersion, ""},
        {{"--version", "--help"}, Action::showHelp, ""},
        {{"--help", "--version"}, Action::showHelp, ""},
        {{"--verbose"}, Action::refuse, "unknown option \"--verbose\""},
        {{"--help", "--nope"}, Action::refuse, "unknown option \"--nope\""},
        {{"-platform", "offscreen"}, Action::refuse, "unknown option \"-platform\""},
        {{"notes"}, Action::refuse, "unexpected argument \"notes\""},
        {{"-"}, Action::refuse, "unexpected argument \"-\""},
        {{"--he\nlp"}, Action::refuse, "unknown option \"--he\\nlp\""},
    };
    for (const auto& c : cases) {
        const CommandLine line = parseCommandLine(c.arguments);
        EXPECT_EQ(line.action, c.action) << c.problem;
        EXPECT_EQ(line.problem, c.problem);
    }
}

TEST(CommandLine, TheUsageNamesEveryOptionAndTheBusInterface)
{
    const std::string usage = usageText();
    for (const char* part : {"--help", "--version", "io.navro.Navro", "/io/navro/Navro", "Toggle"})
        EXPECT_NE(usage.find(part), std::string::npos) << part;
}

} // namespace
} // namespace navro
