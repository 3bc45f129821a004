#include <string>

#include "cli/cli.h"
#include "core/keying/cw_macros.h"
#include "core/keying/morse_table.h"
#include "core/keying/tone_file.h"
#include "core/util/text.h"

// cw-wav TEXT --wpm N -o FILE [--lead U] [--trail U]: the tone file the sound
// output of the CW window would play, to check speed and spacing by ear.
namespace orv::cli {
namespace {

std::optional<int> wholeNumber(const std::string& s, int min, int max) {
    if (!text::isInteger(s))
        return std::nullopt;
    const long long v = text::leadingInt(s);
    if (v < min || v > max)
        return std::nullopt;
    return static_cast<int>(v);
}

int run(Context& ctx, const Args& args) {
    const auto wpmText = args.get("wpm");
    const auto out = args.get("o");
    if (args.positional.size() != 1 || !wpmText || !out)
        return ctx.usage("cw-wav TEXT --wpm N -o FILE [--lead U] [--trail U]");
    const auto wpm = wholeNumber(*wpmText, keying::kMinWpm, keying::kMaxWpm);
    if (!wpm)
        return ctx.fail(297, kRefused, *wpmText);
    int units[2] = {1, 0};
    const char* names[2] = {"lead", "trail"};
    for (int i = 0; i < 2; ++i) {
        if (const auto v = args.get(names[i])) {
            const auto n = wholeNumber(*v, 0, 100);
            if (!n)
                return ctx.fail(225, kRefused, std::string("--") + names[i] + " " + *v);
            units[i] = *n;
        }
    }
    // As in the CW window: upper-cased, and what has no Morse code is dropped.
    keying::BuildToneFile(*wpm, *out, keying::sendableAnsi(args.positional[0]), units[0], units[1]);
    return kOk;
}

const bool registered = registerCommand(
    {"cw-wav",
     "TEXT --wpm N -o FILE [--lead U] [--trail U]",
     "write TEXT as a CW tone file (8 kHz mono WAV, 1000 Hz; lead 1 and trail 0 units)",
     {},
     &run});

} // namespace
} // namespace orv::cli
