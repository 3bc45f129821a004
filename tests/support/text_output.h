#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orv::test {

// The text cut at each `end`; a last piece without its `end` is left out.
std::vector<std::string> splitLines(const std::string& s, const std::string& end = "\n");

// What a shell command writes to stdout, and its wait status.
struct CommandRun {
    int status = -1;
    std::string out;
};
CommandRun runCommand(const std::string& command);

// An ADIF file as tcadif, an established reader, sees it: its JSON output.
CommandRun checkAdif(const std::filesystem::path& file);

// The text of a PDF file in its layout, as pdftotext gives it.
std::string pdfText(const std::filesystem::path& pdf);

} // namespace orv::test
