#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

// The Morse code of the characters the program can send. Text is held as
// Windows-1252 bytes while it is keyed ("ANSI" text), since the table is
// indexed by that code; the rest of the program speaks UTF-8.
namespace orv::keying {

// One entry: 1 a dit, 3 a dah, a negative number a pause of that many units.
using MorseCode = std::vector<int>;

class MorseTable {
public:
    // Built once; every caller gets the same immutable table.
    static const MorseTable& instance();

    // The code of an ANSI character; an empty code for a character without one.
    const MorseCode& code(unsigned char c) const;
    bool has(unsigned char c) const { return !code(c).empty(); }
    // How many characters have a code (60).
    int size() const;

private:
    MorseTable();
    std::array<MorseCode, 224> entries_{}; // indexed by code - 32
};

// UTF-8 text to the ANSI text that is keyed, upper-cased; characters that the
// code page cannot hold become "?" (and so are filtered as any other).
std::string toAnsi(std::string_view utf8);
std::string fromAnsi(std::string_view ansi);
// Upper case of one ANSI character, as the program's input filters fold it.
unsigned char upperAnsi(unsigned char c);

// Seconds per Morse unit: 1200 / wpm / 1000.
float DitSeconds(int wpm);

// The speeds on offer. The tone file needs more than 20 samples a dit, so no
// speed reaches 480 WPM.
inline constexpr int kMinWpm = 5;
inline constexpr int kMaxWpm = 60;
bool isValidWpm(long long wpm);

} // namespace orv::keying
