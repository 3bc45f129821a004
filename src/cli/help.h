#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "cli/cli.h"

// What the tool says about itself. --help, the manual page and the shell
// completion are all made from these and from the command registry, so that
// they name the same commands, options and exit codes.
namespace orv::cli {

struct OptionHelp {
    std::string option;   // "--home"
    std::string argument; // "DIR", or empty for a flag
    std::string text;
};
const std::vector<OptionHelp>& globalOptions();

struct ExitHelp {
    int status;
    std::string text;
};
const std::vector<ExitHelp>& exitStatuses();

// The options a command's usage names ("--band BAND [--rows]" -> "--band",
// "--rows"), in the order they appear, each once.
std::vector<std::string> usageOptions(const Command& command);

void printHelp(std::ostream& out);

} // namespace orv::cli
