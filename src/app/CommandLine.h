#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace navro {

// What the command line asks for. Navro takes no arguments to run; it only answers --help and
// --version, so that neither starts (or disturbs) a Navro.
struct CommandLine {
    enum class Action { run, showHelp, showVersion, refuse };
    Action action = Action::run;
    std::string problem; // for refuse: the argument that was not understood, in a sentence
};

CommandLine parseCommandLine(const std::vector<std::string_view>& arguments);

// The help text, for standard output (--help) or standard error (a refused command line).
std::string usageText();

} // namespace navro
