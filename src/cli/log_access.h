#pragma once

#include <optional>
#include <string>

#include "cli/cli.h"
#include "core/logstore/log_setup.h"

// What several commands share: opening a log by name and reading a band.
namespace orv::cli {

// Opens Logs/<name>.sqlite of the data folder. Prints IText(415) for a
// missing log and IText(208) for one too old, and sets `exitCode`.
std::optional<OpenedLog> openNamedLog(Context& ctx, const std::string& name, int& exitCode);

// The BandIndex of --band (the band box text); prints IText(425) and sets
// `exitCode` when it names no band of the program.
std::optional<int> bandOption(Context& ctx, const Args& args, int& exitCode);

// A positional argument or a refusal with a usage line.
std::optional<std::string> positional(Context& ctx, const Args& args, std::size_t i,
                                      const std::string& what, int& exitCode);

// The log named by the first argument and, when `withBand`, the band of
// --band: the name, then the band, then the log itself are checked, and the
// first refusal is printed and sets `exitCode`.
struct LogArgument {
    std::string name;
    OpenedLog opened;
    int band = -1;
};
std::optional<LogArgument> logArgument(Context& ctx, const Args& args, bool withBand,
                                       int& exitCode);

// Answers every question with a fixed answer: the command line has asked
// its questions through its options before it runs.
class FixedDialogs final : public Dialogs {
public:
    explicit FixedDialogs(Answer answer) : answer_(answer) {}
    Answer ask(const std::string&, Buttons, Icon, Answer) override { return answer_; }
    void inform(const std::string&, Icon) override {}

private:
    Answer answer_;
};

} // namespace orv::cli
