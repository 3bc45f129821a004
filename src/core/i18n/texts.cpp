#include "core/i18n/texts.h"

#include <fstream>
#include <sstream>

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
    if (path.empty())
        return {LoadStatus::NoFile};
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return {LoadStatus::NoFile};
    return loadLanguage(in);
}

Texts::LoadResult Texts::loadLanguage(std::istream& in) {
    std::string raw;
    if (!std::getline(in, raw) ||
        text::upper(text::decodeLegacy(raw)).find("ORVANTACONTEST LANGUAGE FILE") == std::string::npos)
        return {LoadStatus::Invalid};
    LoadResult result;
    while (std::getline(in, raw)) {
        // Files from the Windows world end their lines with CR LF.
        if (!raw.empty() && raw.back() == '\r')
            raw.pop_back();
        const std::string line = text::trimLeft(text::decodeLegacy(raw));
        if (text::trim(line).empty() || line[0] < '0' || line[0] > '9')
            continue;
        const auto eq = line.find('=');
        if (eq == std::string::npos || eq == 0)
            continue;
        const long long n = text::leadingInt(line.substr(0, eq));
        if (n > kMaxRow) {
            result.status = LoadStatus::Truncated;
            result.badRow = static_cast<int>(std::min<long long>(n, 1000000000));
            return result;
        }
        set(static_cast<int>(n), text::trimLeft(line.substr(eq + 1)));
        ++result.rowsRead;
    }
    return result;
}

std::string Texts::languageTemplate() const {
    std::ostringstream out;
    out << "# OrvantaContest Language File V1.0\r\n# Deutsch\r\n\r\n";
    for (int n = 0; n <= kMaxRow; ++n) {
        const auto& t = (*this)(n);
        if (t.empty())
            continue;
        std::string escaped;
        for (char c : t) {
            if (c == '\r')
                escaped += "\\r";
            else if (c == '\n')
                escaped += "\\n";
            else
                escaped += c;
        }
        out << n << " = " << escaped << "\r\n";
    }
    return out.str();
}

} // namespace orv
