#pragma once

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

} // namespace orv::test
