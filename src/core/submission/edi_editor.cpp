#include "core/submission/edi_editor.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace {

bool unassigned1252(unsigned char c) {
    return c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D;
}

bool hasHighBytes(std::string_view s) {
    for (const char c : s)
        if (static_cast<unsigned char>(c) >= 0x80)
            return true;
    return false;
}

// Windows-1252 to UTF-8 without the replacement character: the unassigned
// bytes become the C1 controls of the same number.
std::string from1252(std::string_view s) {
    std::string out;
    out.reserve(s.size() + s.size() / 8);
    std::size_t run = 0;
    for (std::size_t i = 0; i <= s.size(); ++i) {
        if (i < s.size() && !unassigned1252(static_cast<unsigned char>(s[i])))
            continue;
        out += text::cp1252ToUtf8(s.substr(run, i - run));
        if (i < s.size()) {
            out += static_cast<char>(0xC2);
            out += s[i];
        }
        run = i + 1;
    }
    return out;
}

// UTF-8 to Windows-1252, the way back of from1252; nothing when a character
// has no place in the code page.
bool to1252(std::string_view s, std::string& out) {
    std::size_t run = 0;
    for (std::size_t i = 0; i <= s.size(); ++i) {
        const bool c1 = i + 1 < s.size() && static_cast<unsigned char>(s[i]) == 0xC2 &&
                        unassigned1252(static_cast<unsigned char>(s[i + 1]));
        if (i < s.size() && !c1)
            continue;
        const std::string_view part = s.substr(run, i - run);
        const std::string bytes = text::utf8ToCp1252(part);
        // utf8ToCp1252 writes "?" for what it cannot hold: a "?" more than
        // the text had means a character was lost.
        if (std::count(bytes.begin(), bytes.end(), '?') !=
            std::count(part.begin(), part.end(), '?'))
            return false;
        out += bytes;
        if (i < s.size())
            out += s[i + 1];
        run = i + 2;
        ++i;
    }
    return true;
}

} // namespace

EdiEditorText decodeEdiEditor(std::string_view bytes) {
    EdiEditorText t;
    t.utf8 = hasHighBytes(bytes) && text::isValidUtf8(bytes);
    const std::string decoded = t.utf8 ? std::string(bytes) : from1252(bytes);
    if (const auto brk = decoded.find_first_of("\r\n"); brk != std::string::npos)
        t.crlf = decoded[brk] == '\r' && brk + 1 < decoded.size() && decoded[brk + 1] == '\n';
    t.text.reserve(decoded.size());
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        if (decoded[i] == '\r') {
            t.text += '\n';
            if (i + 1 < decoded.size() && decoded[i + 1] == '\n')
                ++i;
        } else {
            t.text += decoded[i];
        }
    }
    return t;
}

std::string encodeEdiEditor(const EdiEditorText& t) {
    std::string lines;
    lines.reserve(t.text.size() + t.text.size() / 16);
    for (const char c : t.text) {
        if (c == '\n')
            lines += t.crlf ? "\r\n" : "\n";
        else
            lines += c;
    }
    if (t.utf8 || !hasHighBytes(lines))
        return lines;
    std::string out;
    out.reserve(lines.size());
    if (!to1252(lines, out))
        return lines;
    return out;
}

Result<EdiEditorText> loadEdiEditor(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw fileio::FileError("cannot read " + file.string() + ": " + std::strerror(errno));
    // One byte past the limit is enough to refuse; a huge file is not read.
    std::string bytes(kEdiEditorLimit + 1, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (in.bad())
        throw fileio::FileError("cannot read " + file.string());
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    if (bytes.size() > kEdiEditorLimit)
        return refuse(367, {}, file.string());
    return decodeEdiEditor(bytes);
}

std::filesystem::path ediEditorName(const std::filesystem::path& chosen) {
    std::string name = chosen.string();
    if (!name.empty() && name.back() == '\0')
        name.pop_back();
    if (!text::endsWith(name, ".EDI") && !text::endsWith(name, ".edi"))
        name += ".EDI";
    return name;
}

void saveEdiEditor(const std::filesystem::path& file, const EdiEditorText& t) {
    fileio::writeAtomic(file, encodeEdiEditor(t));
}

} // namespace orv
