#include "core/settings/ini_file.h"

#include <optional>
#include <system_error>

#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace fs = std::filesystem;

namespace {

// The text of one file as lines without their ends, with the line end the
// file uses, so that a file from the Windows world keeps its CR LF.
struct Document {
    std::vector<std::string> lines;
    std::string eol = "\n";
};

std::optional<Document> load(const fs::path& path) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec))
        return std::nullopt;
    // decodeLegacy also drops a byte-order mark.
    const std::string content = text::decodeLegacy(fileio::readAll(path));
    Document doc;
    const auto firstLf = content.find('\n');
    if (firstLf != std::string::npos && firstLf > 0 && content[firstLf - 1] == '\r')
        doc.eol = "\r\n";
    doc.lines = text::splitLines(content);
    return doc;
}

void save(const fs::path& path, const Document& doc) {
    std::string out;
    for (const auto& line : doc.lines) {
        out += line;
        out += doc.eol;
    }
    fileio::writeAtomic(path, out);
}

// "[Name]" with blanks around; a header without its closing bracket still
// names a section, as the profile functions of the old world read it.
std::optional<std::string> sectionName(const std::string& line) {
    const std::string t = text::trim(line);
    if (t.empty() || t[0] != '[')
        return std::nullopt;
    const auto close = t.find(']');
    return text::trim(t.substr(1, close == std::string::npos ? std::string::npos : close - 1));
}

bool isBlankLine(const std::string& line) {
    return text::trim(line).empty();
}

// Lines [header, end) of a section: its header and everything up to the next.
struct Range {
    std::size_t header = 0;
    std::size_t end = 0;
};

std::optional<Range> findSection(const Document& doc, std::string_view name, std::size_t from = 0) {
    for (std::size_t i = from; i < doc.lines.size(); ++i) {
        const auto n = sectionName(doc.lines[i]);
        if (!n || !text::iequals(*n, name))
            continue;
        Range r{i, i + 1};
        while (r.end < doc.lines.size() && !sectionName(doc.lines[r.end]))
            ++r.end;
        return r;
    }
    return std::nullopt;
}

// Key and value of a "key=value" line; lines without "=" or without a key
// are list entries, not keys.
std::optional<std::pair<std::string, std::string>> splitKey(const std::string& line) {
    const auto eq = line.find('=');
    if (eq == std::string::npos)
        return std::nullopt;
    std::string key = text::trim(line.substr(0, eq));
    if (key.empty())
        return std::nullopt;
    return std::make_pair(std::move(key), text::trim(line.substr(eq + 1)));
}

std::optional<std::size_t> findKey(const Document& doc, const Range& r, std::string_view key) {
    for (std::size_t i = r.header + 1; i < r.end; ++i) {
        const auto kv = splitKey(doc.lines[i]);
        if (kv && text::iequals(kv->first, key))
            return i;
    }
    return std::nullopt;
}

// Where a new line of the section goes: after its last line that is not blank,
// so that the blank line before the next section stays where it is.
std::size_t appendPosition(const Document& doc, const Range& r) {
    std::size_t pos = r.end;
    while (pos > r.header + 1 && isBlankLine(doc.lines[pos - 1]))
        --pos;
    return pos;
}

// A new section at the end of the file, set off by a blank line.
Range appendSection(Document& doc, std::string_view section) {
    if (!doc.lines.empty() && !isBlankLine(doc.lines.back()))
        doc.lines.emplace_back();
    doc.lines.push_back("[" + text::upper(section) + "]");
    return Range{doc.lines.size() - 1, doc.lines.size()};
}

// A line break inside a value would turn the rest into a line of its own.
std::string oneLine(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c == '\r' || c == '\n')
            c = ' ';
    return out;
}

} // namespace

IniFile::IniFile(fs::path path, Beeper* beeper) : path_(std::move(path)), beeper_(beeper) {}

bool IniFile::exists() const {
    std::error_code ec;
    return fs::is_regular_file(path_, ec);
}

void IniFile::beep() const {
    if (beeper_)
        beeper_->beep();
}

std::optional<std::string> IniFile::lookup(std::string_view section, std::string_view key) const {
    if (section.empty()) {
        beep();
        return std::nullopt;
    }
    const auto doc = load(path_);
    if (!doc) {
        beep();
        return std::nullopt;
    }
    const auto r = findSection(*doc, section);
    if (!r)
        return std::nullopt;
    const auto i = findKey(*doc, *r, key);
    if (!i)
        return std::nullopt;
    return splitKey(doc->lines[*i])->second;
}

long long IniFile::getInt(std::string_view section, std::string_view key) const {
    const auto v = lookup(section, key);
    return v ? text::leadingInt(*v) : 0;
}

std::string IniFile::getStr(std::string_view section, std::string_view key) const {
    const auto v = lookup(section, key);
    return v ? text::left(*v, kMaxText) : std::string();
}

void IniFile::write(std::string_view section, std::string_view key, std::string_view value) {
    if (section.empty() || text::trim(key).empty()) {
        beep();
        return;
    }
    Document doc = load(path_).value_or(Document{});
    const std::string line = text::trim(oneLine(key)) + "=" + oneLine(value);
    auto r = findSection(doc, section);
    if (!r)
        r = appendSection(doc, section);
    if (const auto i = findKey(doc, *r, key))
        doc.lines[*i] = line;
    else
        doc.lines.insert(doc.lines.begin() + static_cast<long>(appendPosition(doc, *r)), line);
    save(path_, doc);
}

void IniFile::deleteKey(std::string_view section, std::string_view key) {
    if (section.empty()) {
        beep();
        return;
    }
    auto doc = load(path_);
    if (!doc)
        return;
    const auto r = findSection(*doc, section);
    if (!r)
        return;
    const auto i = findKey(*doc, *r, key);
    if (!i)
        return;
    doc->lines.erase(doc->lines.begin() + static_cast<long>(*i));
    save(path_, *doc);
}

std::vector<std::string> IniFile::readSection(std::string_view section) const {
    std::vector<std::string> entries;
    if (section.empty()) {
        beep();
        return entries;
    }
    const auto doc = load(path_);
    if (!doc) {
        beep();
        return entries;
    }
    const auto r = findSection(*doc, section);
    if (!r)
        return entries;
    // The entries as one text, each followed by a separator, of which only
    // the first kMaxText characters are kept.
    std::size_t budget = kMaxText;
    for (std::size_t i = r->header + 1; i < r->end && budget > 0; ++i) {
        std::string entry = text::trim(doc->lines[i]);
        if (entry.empty())
            continue;
        const std::size_t len = text::length(entry);
        if (len >= budget) {
            entries.push_back(text::left(entry, budget));
            break;
        }
        entries.push_back(std::move(entry));
        budget -= len + 1;
    }
    return entries;
}

void IniFile::writeSection(std::string_view section, const std::vector<std::string>& entries) {
    if (section.empty()) {
        beep();
        return;
    }
    auto doc = load(path_);
    if (!doc) {
        beep();
        return;
    }
    std::vector<std::string> lines;
    for (const auto& e : entries) {
        std::string line = text::trim(oneLine(e));
        if (!line.empty())
            lines.push_back(std::move(line));
    }
    auto r = findSection(*doc, section);
    if (!r)
        r = appendSection(*doc, section);
    const auto first = doc->lines.begin() + static_cast<long>(r->header + 1);
    const auto last = doc->lines.begin() + static_cast<long>(appendPosition(*doc, *r));
    const auto at = doc->lines.erase(first, last);
    doc->lines.insert(at, lines.begin(), lines.end());
    save(path_, *doc);
}

void IniFile::deleteSection(std::string_view section) {
    if (section.empty()) {
        beep();
        return;
    }
    auto doc = load(path_);
    if (!doc)
        return;
    bool changed = false;
    // Every copy of the section goes, so that a second one further down does
    // not come to light in its place.
    while (const auto r = findSection(*doc, section)) {
        doc->lines.erase(doc->lines.begin() + static_cast<long>(r->header),
                         doc->lines.begin() + static_cast<long>(r->end));
        changed = true;
    }
    if (changed)
        save(path_, *doc);
}

void IniFile::create() {
    if (!exists())
        fileio::writeAtomic(path_, std::string());
}

} // namespace orv
