#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orv::test {

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs the built orvanta-tool as a separate process with the given arguments
// (without the program name) and collects its exit status and output.
ToolRun runTool(const std::vector<std::string>& args, const std::string& stdinText = {});
// The same on the data folder `home` (--home).
inline ToolRun runToolAt(const std::filesystem::path& home, std::vector<std::string> args) {
    args.insert(args.begin(), {"--home", home.string()});
    return runTool(args);
}

} // namespace orv::test
