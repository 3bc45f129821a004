#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "core/app/app_paths.h"
#include "core/i18n/texts.h"
#include "core/util/ports.h"
#include "core/util/result.h"

// The command-line tool: one registry of commands, each in a file of its own
// beside this one, sharing the data folder, the text table and the exit codes.
namespace orv::cli {

enum Exit : int { kOk = 0, kFailure = 1, kRefused = 2, kDuplicate = 3 };

struct Args {
    std::vector<std::string> positional;
    std::map<std::string, std::string> options; // "--band 144" -> options["band"]
    std::set<std::string> flags;                // "--yes" -> flags

    bool has(const std::string& name) const { return options.count(name) || flags.count(name); }
    std::optional<std::string> get(const std::string& name) const;
    std::string getOr(const std::string& name, const std::string& fallback) const;
};

struct Context {
    AppPaths paths;
    Texts texts;
    Clock& clock;
    std::ostream& out;
    std::ostream& err;
    // The logs the command opened; a shared one sends what the command
    // queued before the tool ends.
    std::vector<std::filesystem::path> openedLogs{};

    // Prints a refusal in the program's own words and returns kRefused.
    int refuse(const Failure& f);
    // Prints a text row (and optional detail) on stderr and returns `code`.
    int fail(int textRow, int code, const std::string& detail = {});
    // A command called wrongly: its syntax after the word for usage; kRefused.
    int usage(const std::string& syntax);
    // An argument left out, named as in the syntax; kRefused.
    int missing(const std::string& what);
};

struct Command {
    std::string name;
    std::string usage;                 // the part after the command name
    std::string summary;               // one line for --help
    std::set<std::string> flagOptions; // options that take no value
    int (*run)(Context&, const Args&) = nullptr;
};

// Registers a command; used by the static registrars of the command files.
bool registerCommand(Command command);
const std::map<std::string, Command>& commands();

// Runs the tool with argv-style arguments; returns the exit status.
int runTool(const std::vector<std::string>& argv, Clock& clock, std::ostream& out,
            std::ostream& err);

} // namespace orv::cli
