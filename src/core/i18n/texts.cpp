#include "core/i18n/texts.h"

#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

#include "core/i18n/builtin_texts.h"
#include "core/util/text.h"

namespace orv {

const std::string& Texts::operator()(int n) const {
    static const std::string empty;
    if (n < 0 || n > kMaxRow)
        return empty;
    return rows_[static_cast<std::size_t>(n)];
}

void Texts::set(int n, std::string t) {
    if (n >= 0 && n <= kMaxRow)
        rows_[static_cast<std::size_t>(n)] = std::move(t);
}

void Texts::loadDefaults() {
    for (auto& r : rows_)
        r.clear();
    for (const auto& [n, t] : builtinTexts())
        set(n, t);
}

Texts::LoadResult Texts::loadLanguageFile(const std::filesystem::path& path) {
    std::error_code ec;
    if (path.empty() || !std::filesystem::is_regular_file(path, ec))
        return {LoadStatus::NoFile};
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return {LoadStatus::NoFile};
    return loadLanguage(in);
}

namespace {

// Lines of a language file: read whole, so that a file in Windows-1252 is
// recognised as one; CR LF and LF both end a line, and a last line without
// its end counts as well.
std::vector<std::string> lines(std::istream& in) {
    std::ostringstream ss;
    ss << in.rdbuf();
    // decodeLegacy also drops a byte-order mark.
    return text::splitLines(text::decodeLegacy(ss.str()));
}

// A line of a language file cannot hold a line break, so a text carries it
// as the two characters "\r\n".
constexpr std::string_view kBreakMark = "\\r\\n";

// A carriage return alone inside a line (an old Mac editor, a damaged file)
// is a line break as well, written as "\r\n" in the text, so that the
// template writes every text back as it was read.
std::string unescapeBreaks(std::string s) {
    for (auto pos = s.find(kBreakMark); pos != std::string::npos; pos = s.find(kBreakMark, pos)) {
        s.replace(pos, kBreakMark.size(), "\r\n");
        pos += 2;
    }
    if (s.find('\r') == std::string::npos)
        return s;
    std::string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        out += s[i];
        if (s[i] == '\r' && (i + 1 == s.size() || s[i + 1] != '\n'))
            out += '\n';
    }
    return out;
}

std::string escapeBreaks(const std::string& s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\r' || s[i] == '\n') {
            out += kBreakMark;
            if (s[i] == '\r' && i + 1 < s.size() && s[i + 1] == '\n')
                ++i;
        } else {
            out += s[i];
        }
    }
    return out;
}

} // namespace

Texts::LoadResult Texts::loadLanguage(std::istream& in) {
    const auto all = lines(in);
    if (all.empty() || text::upper(all[0]).find(kMarker) == std::string::npos)
        return {LoadStatus::Invalid};
    LoadResult result;
    for (std::size_t i = 1; i < all.size(); ++i) {
        const std::string line = text::trimLeft(all[i]);
        if (line.empty() || line[0] < '0' || line[0] > '9')
            continue;
        const auto eq = line.find('=');
        if (eq == std::string::npos)
            continue;
        const long long n = text::leadingInt(line.substr(0, eq));
        if (n > kMaxRow) {
            result.status = LoadStatus::Truncated;
            result.badRow = static_cast<int>(std::min<long long>(n, 1000000000));
            return result;
        }
        set(static_cast<int>(n), unescapeBreaks(text::trimLeft(line.substr(eq + 1))));
        ++result.rowsRead;
    }
    return result;
}

std::string Texts::languageTemplate() const {
    std::ostringstream out;
    out << "# OrvantaContest Language File V1.0\n# Deutsch\n\n";
    for (int n = 0; n <= kMaxRow; ++n) {
        const auto& t = (*this)(n);
        if (!t.empty())
            out << n << " = " << escapeBreaks(t) << "\n";
    }
    return out.str();
}

} // namespace orv
