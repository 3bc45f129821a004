#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/util/result.h"

// The text of an EDI file as the editor `Form16` holds it, and the way back
// to the file's bytes. The editor's box knows only "\n" between lines, so
// the file's own line break and code page are kept beside the text: a file
// opened and saved without a change keeps every byte.
namespace orv {

// The largest file the editor takes, in bytes.
inline constexpr std::uintmax_t kEdiEditorLimit = 65000;

struct EdiEditorText {
    std::string text;  // UTF-8, lines separated by "\n"
    bool crlf = true;  // what "\n" becomes in the file: CR LF as the export writes
    bool utf8 = false; // the file was UTF-8; else Windows-1252 as the export writes
};

// The bytes of a file as the editor shows them. Valid UTF-8 stays UTF-8; any
// other text is Windows-1252, its five unassigned bytes kept as U+0081,
// U+008D, U+008F, U+0090 and U+009D so they survive a save. CR LF, CR and LF
// all end a line; the first line break found decides what is written back.
EdiEditorText decodeEdiEditor(std::string_view bytes);

// The text back as bytes, with no line added at the end. A text that the
// code page cannot hold is written as UTF-8 rather than losing characters.
std::string encodeEdiEditor(const EdiEditorText& t);

// Opening a file: IText(367) for a file larger than the limit (the file is
// read no further); a file that cannot be read throws fileio::FileError.
Result<EdiEditorText> loadEdiEditor(const std::filesystem::path& file);

// The name a save writes to: ".EDI" appended unless the name ends in ".EDI"
// or ".edi" exactly; a closing NUL character is dropped first.
std::filesystem::path ediEditorName(const std::filesystem::path& chosen);

// Replaces the file with the text (throws fileio::FileError, leaving the old
// file as it was).
void saveEdiEditor(const std::filesystem::path& file, const EdiEditorText& t);

} // namespace orv
