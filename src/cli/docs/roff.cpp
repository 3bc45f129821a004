#include "cli/docs/roff.h"

#include <cctype>

namespace orv::cli::roff {

namespace {

std::string escapeInline(std::string_view text) {
    std::string out;
    for (char c : text) {
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
    }
    return out;
}

// A dot or a quote opening a line would make it a request.
std::string guardLineStart(std::string line) {
    if (!line.empty() && (line[0] == '.' || line[0] == '\''))
        line.insert(0, "\\&");
    return line;
}

bool isPlaceholder(std::string_view word) {
    bool letter = false;
    for (char c : word) {
        if (std::islower(static_cast<unsigned char>(c)))
            return false;
        letter = letter || std::isupper(static_cast<unsigned char>(c));
    }
    return letter;
}

// One word of a usage line; brackets, bars and commas around it stay plain.
std::string styleWord(std::string_view word) {
    const auto isMark = [](char c) { return c == '[' || c == ']' || c == '|' || c == ','; };
    std::string out;
    std::size_t i = 0;
    while (i < word.size()) {
        if (isMark(word[i])) {
            out += word[i++];
            continue;
        }
        std::size_t end = i;
        while (end < word.size() && !isMark(word[end]))
            ++end;
        const std::string_view part = word.substr(i, end - i);
        if (part.size() > 1 && part[0] == '-')
            out += "\\fB" + escapeInline(part) + "\\fR";
        else if (isPlaceholder(part))
            out += "\\fI" + escapeInline(part) + "\\fR";
        else
            out += escapeInline(part);
        i = end;
    }
    return out;
}

} // namespace

std::string escape(std::string_view text) {
    return guardLineStart(escapeInline(text));
}

std::string usage(std::string_view text) {
    std::string out;
    std::size_t i = 0;
    while (i < text.size()) {
        if (text[i] == ' ') {
            out += ' ';
            ++i;
            continue;
        }
        std::size_t end = text.find(' ', i);
        if (end == std::string_view::npos)
            end = text.size();
        out += styleWord(text.substr(i, end - i));
        i = end;
    }
    return guardLineStart(out);
}

} // namespace orv::cli::roff
