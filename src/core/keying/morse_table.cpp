#include "core/keying/morse_table.h"

#include "core/util/text.h"

namespace orv::keying {
namespace {

// ".-" notation to the table's units.
MorseCode fromDots(std::string_view pattern) {
    MorseCode c;
    for (char ch : pattern)
        c.push_back(ch == '.' ? 1 : 3);
    return c;
}

} // namespace

MorseTable::MorseTable() {
    auto put = [this](unsigned char ch, MorseCode c) { entries_[ch - 32] = std::move(c); };
    put(' ', {-7});
    put('!', {-6});
    static constexpr std::array<std::string_view, 26> letters = {
        ".-",   "-...", "-.-.", "-..",  ".",   "..-.", "--.",  "....", "..",
        ".---", "-.-",  ".-..", "--",   "-.",  "---",  ".--.", "--.-", ".-.",
        "...",  "-",    "..-",  "...-", ".--", "-..-", "-.--", "--.."};
    for (int i = 0; i < 26; ++i)
        put(static_cast<unsigned char>('A' + i), fromDots(letters[i]));
    static constexpr std::array<std::string_view, 10> digits = {
        "-----", ".----", "..---", "...--", "....-", ".....", "-....", "--...", "---..", "----."};
    for (int i = 0; i < 10; ++i)
        put(static_cast<unsigned char>('0' + i), fromDots(digits[i]));
    const std::pair<unsigned char, std::string_view> others[] = {
        {'\'', ".----."}, {'(', "-.--."},   {')', "-.--.-"}, {'+', ".-.-."},  {',', "--..--"},
        {'-', "-....-"},  {'.', ".-.-.-"},  {'/', "-..-."},  {':', "---..."}, {';', "-.-.-."},
        {'=', "-...-"},   {'?', "..--.."},  {'@', ".--.-."}, {192, ".--.-"},  {197, ".--.-"},
        {196, ".-.-"},    {200, ".-..-"},   {201, "..-.."},  {209, "--.--"},  {214, "---."},
        {220, "..--"},    {223, "...--.."},
    };
    for (const auto& [ch, pattern] : others)
        put(ch, fromDots(pattern));
}

const MorseTable& MorseTable::instance() {
    static const MorseTable table;
    return table;
}

const MorseCode& MorseTable::code(unsigned char c) const {
    static const MorseCode none;
    return c < 32 ? none : entries_[c - 32];
}

int MorseTable::size() const {
    int n = 0;
    for (const auto& e : entries_)
        n += e.empty() ? 0 : 1;
    return n;
}

unsigned char upperAnsi(unsigned char c) {
    if (c >= 'a' && c <= 'z')
        return static_cast<unsigned char>(c - 32);
    // à..þ to À..Þ, but not the division sign; ß and ÿ have no capital here.
    if (c >= 224 && c <= 254 && c != 247)
        return static_cast<unsigned char>(c - 32);
    return c;
}

std::string toAnsi(std::string_view utf8) {
    return text::utf8ToCp1252(utf8);
}
std::string fromAnsi(std::string_view ansi) {
    return text::cp1252ToUtf8(ansi);
}

float DitSeconds(int wpm) {
    return 1200.0f / static_cast<float>(wpm) / 1000.0f;
}

bool isValidWpm(long long wpm) {
    return wpm >= kMinWpm && wpm <= kMaxWpm;
}

} // namespace orv::keying
