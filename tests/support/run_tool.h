#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace orv::test {

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs the built orvanta-tool as a separate process with the given arguments
// (without the program name) and collects its exit status and output.
// `env` sets variables of the tool's environment, an empty value unsetting one.
using EnvChanges = std::vector<std::pair<std::string, std::string>>;
ToolRun runTool(const std::vector<std::string>& args, const std::string& stdinText = {},
                const EnvChanges& env = {});
// The same on the data folder `home` (--home).
inline ToolRun runToolAt(const std::filesystem::path& home, std::vector<std::string> args) {
    args.insert(args.begin(), {"--home", home.string()});
    return runTool(args);
}
// Makes the log `name` of OE1ABC in JN78DF with the tool, as every tool test
// needs one; the exit status.
inline int newLogAt(const std::filesystem::path& home, const std::string& name,
                    const std::string& contest = "T") {
    return runToolAt(home, {"new-log", name, "--call", "OE1ABC", "--locator", "JN78DF", "--contest",
                            contest})
        .status;
}

} // namespace orv::test
