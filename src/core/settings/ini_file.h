#pragma once

#include <filesystem>
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
// Beeper (when one is given) and yields 0 or empty text.
class IniFile {
public:
    explicit IniFile(std::filesystem::path path, Beeper* beeper = nullptr);

    const std::filesystem::path& path() const { return path_; }
    bool exists() const;

    // IniGetInt: the leading integer of the value, 0 when absent or not a number.
    long long getInt(std::string_view section, std::string_view key) const;
    // IniGetStr: the value, cut at 32767 characters; empty when absent.
    std::string getStr(std::string_view section, std::string_view key) const;
    // IniWrite: creates the file, section or key as needed.
    void write(std::string_view section, std::string_view key, std::string_view value);
    // IniReadSection: every line of the section, in order, within 32767 characters.
    std::vector<std::string> readSection(std::string_view section) const;
    // IniWriteSection: replaces the section's lines with these entries.
    void writeSection(std::string_view section, const std::vector<std::string>& entries);
    // IniDeleteSection.
    void deleteSection(std::string_view section);

private:
    std::filesystem::path path_;
    Beeper* beeper_;
};

} // namespace orv
