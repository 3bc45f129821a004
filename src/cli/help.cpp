#include "cli/help.h"

#include <algorithm>
#include <sstream>

#include "core/version.h"

namespace orv::cli {

const std::vector<OptionHelp>& globalOptions() {
    static const std::vector<OptionHelp> options{
        {"--home", "DIR",
         "data folder (default $ORVANTA_HOME, else $XDG_DATA_HOME/OrvantaContest)"},
        {"--help", "", "this text; after a command, that command's usage"},
        {"--version", "", "the program's version"},
    };
    return options;
}

const std::vector<ExitHelp>& exitStatuses() {
    static const std::vector<ExitHelp> statuses{
        {kOk, "success"},
        {kFailure, "file/database/device failure"},
        {kRefused, "input refused"},
        {kDuplicate, "QSO refused as a duplicate"},
    };
    return statuses;
}

std::vector<std::string> usageOptions(const Command& command) {
    std::vector<std::string> found;
    std::istringstream words(command.usage);
    std::string w;
    while (words >> w) {
        w.erase(0, w.find_first_not_of('['));
        w.erase(std::min(w.size(), w.find_first_of("]|")));
        const bool option = w.size() >= 2 && w[0] == '-' && w != "--";
        if (option && std::find(found.begin(), found.end(), w) == found.end())
            found.push_back(w);
    }
    return found;
}

void printHelp(std::ostream& out) {
    out << "orvanta-tool " << kVersion << " - the OrvantaContest log tool\n\n"
        << "Usage: orvanta-tool [--home DIR] COMMAND [ARGS]\n\n"
        << "Global options:\n";
    for (const auto& o : globalOptions()) {
        std::string head = o.option + (o.argument.empty() ? "" : " " + o.argument);
        head.resize(std::max<std::size_t>(head.size() + 1, 13), ' ');
        out << "  " << head << o.text << "\n";
    }
    out << "\nCommands:\n";
    for (const auto& [name, c] : commands())
        out << "  " << name << " " << c.usage << "\n      " << c.summary << "\n";
    out << "\nExit status:";
    const char* sep = " ";
    for (const auto& e : exitStatuses()) {
        out << sep << e.status << " " << e.text;
        sep = ", ";
    }
    out << ".\n";
}

} // namespace orv::cli
