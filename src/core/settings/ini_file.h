#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/util/ports.h"

namespace orv {

// One settings file of sections and keys ("[Section]", "key=value"), with the
// six operations of the program. Names are compared case-blind; section names
// are upper-cased on writing. Sections also serve as lists: every line of such
// a section is one entry, whether or not it holds "=".
//
// Every write rewrites the file atomically (temporary file, flush, rename), so
// a crash or a full disk never leaves a half-written file; a failed write
// throws fileio::FileError and the old file stays as it was. Files that are
// not valid UTF-8 are read as Windows-1252.
//
// Reading a missing file, or passing an empty section name, beeps through the
// Beeper (when one is given) and yields 0 or empty text. As with the profile
// functions the file format comes from, writeSection on a missing file beeps
// and writes nothing; write() creates the file, and so does create().
// Lines end with LF in a new file; a file with CR LF keeps them.
class IniFile {
public:
    // The size of the old profile buffers: longer values and list sections are cut.
    static constexpr std::size_t kMaxText = 32767;

    explicit IniFile(std::filesystem::path path, Beeper* beeper = nullptr);

    const std::filesystem::path& path() const { return path_; }
    bool exists() const;

    // IniGetInt: the leading integer of the value, 0 when absent or not a number.
    long long getInt(std::string_view section, std::string_view key) const;
    // IniGetStr: the value, cut at 32767 characters; empty when absent.
    std::string getStr(std::string_view section, std::string_view key) const;
    // IniWrite: creates the file, section or key as needed; the key keeps its
    // place. A line break in the value becomes a blank.
    void write(std::string_view section, std::string_view key, std::string_view value);
    // IniReadSection: every line of the section, in order, within 32767 characters.
    std::vector<std::string> readSection(std::string_view section) const;
    // IniWriteSection: replaces the section's lines with these entries.
    void writeSection(std::string_view section, const std::vector<std::string>& entries);
    // IniDeleteSection: every section of that name, with its lines.
    void deleteSection(std::string_view section);
    // Removes one key of a section; nothing happens when it is not there.
    void deleteKey(std::string_view section, std::string_view key);
    // An empty file when there is none, so that writeSection has a file to work on.
    void create();

private:
    void beep() const;
    std::optional<std::string> lookup(std::string_view section, std::string_view key) const;

    std::filesystem::path path_;
    Beeper* beeper_;
};

} // namespace orv
