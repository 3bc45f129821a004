#include "support/text_output.h"

#include <cstdio>

#include "support/temp_dir.h"

namespace orv::test {

std::vector<std::string> splitLines(const std::string& s, const std::string& end) {
    std::vector<std::string> out;
    std::size_t a = 0, b;
    while ((b = s.find(end, a)) != std::string::npos) {
        out.push_back(s.substr(a, b - a));
        a = b + end.size();
    }
    return out;
}

CommandRun runCommand(const std::string& command) {
    CommandRun r;
    FILE* p = popen(command.c_str(), "r");
    if (!p)
        return r;
    char buf[4096];
    std::size_t n;
    while ((n = fread(buf, 1, sizeof buf, p)) > 0)
        r.out.append(buf, n);
    r.status = pclose(p);
    return r;
}

CommandRun checkAdif(const std::filesystem::path& file) {
    const auto script = sourceDir() / "tests" / "node" / "check_adif.js";
    return runCommand("node '" + script.string() + "' '" + file.string() + "' 2>&1");
}

std::string pdfText(const std::filesystem::path& pdf) {
    return runCommand("pdftotext -layout '" + pdf.string() + "' -").out;
}

} // namespace orv::test
