#include "app/CommandLine.h"

#include "app/Log.h"

namespace navro {

CommandLine parseCommandLine(const std::vector<std::string_view>& arguments)
{
    // The first one that is not understood decides: a mistyped option never starts Navro.
    CommandLine line;
    for (const std::string_view argument : arguments) {
        if (argument == "-h" || argument == "--help") {
            line.action = CommandLine::Action::showHelp;
        } else if (argument == "-v" || argument == "--version") {
            if (line.action == CommandLine::Action::run)
                line.action = CommandLine::Action::showVersion;
        } else {
            const bool isOption = argument.starts_with('-') && argument.size() > 1;
            return {CommandLine::Action::refuse,
                    std::string(isOption ? "unknown option" : "unexpected argument") + " \"" +
                        excerptForLog(argument, 100) + "\""};
        }
    }
    return line;
}

std::string usageText()
{
    return "Usage: navro [--help | --version]\n"
           "\n"
           "Navro turns the top centre of the screen into a small live panel, the notch.\n"
           "Run it without arguments; started again, it opens the notch of the Navro that runs.\n"
           "\n"
           "  -h, --help     show this help and exit\n"
           "  -v, --version  show the version and exit\n"
           "\n"
           "A running Navro answers on the session bus as io.navro.Navro (object\n"
           "/io/navro/Navro): Open(b focus), Close(), Toggle(), ShowOnboarding() and\n"
           "OpenSettings(s page), page being general, prayer or about. For example:\n"
           "  gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \\\n"
           "    --method io.navro.Navro.Toggle\n";
}

} // namespace navro
