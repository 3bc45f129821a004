#pragma once

#include <array>
#include <filesystem>
#include <istream>
#include <string>

namespace orv {

// The table of every user text (IText). Starts with the built-in German
// rows; a language file overrides rows by number. Rows 1 to 425 are those of
// the classic table, so that its language files keep their meaning; the
// captions, help and messages added since stand from kFirstAddedRow on, each
// area of the program in a range of its own (see builtin_texts.h).
class Texts {
public:
    static constexpr int kMaxRow = 1999;
    static constexpr int kFirstAddedRow = 501;
    // What the first line of a language file must hold, after upper-casing.
    static constexpr const char* kMarker = "ORVANTACONTEST LANGUAGE FILE";

    Texts() { loadDefaults(); }

    // IText(n); out-of-range rows read as empty text.
    const std::string& operator()(int n) const;
    void set(int n, std::string text);
    // Clears every row and fills the built-in ones (LoadDefaultTexts).
    void loadDefaults();

    enum class LoadStatus {
        Loaded,    // all lines read
        NoFile,    // empty path or missing file: nothing happens, nothing is said
        Invalid,   // first line lacks the marker: nothing changed, show IText(230)
        Truncated, // a row number above kMaxRow stopped the reading; rows before it stay
    };
    struct LoadResult {
        LoadStatus status = LoadStatus::Loaded;
        int rowsRead = 0;
        int badRow = 0; // the number that stopped a truncated read
    };
    // LoadLanguageFile: rows absent from the file keep what they held. A text
    // carries a line break as the two characters "\r\n".
    LoadResult loadLanguageFile(const std::filesystem::path& path);
    LoadResult loadLanguage(std::istream& in);

    // The template of a language file with every non-empty row ("neu.lng"),
    // one "n = text" line each, which loadLanguage reads back unchanged.
    std::string languageTemplate() const;

private:
    std::array<std::string, kMaxRow + 1> rows_;
};

} // namespace orv
