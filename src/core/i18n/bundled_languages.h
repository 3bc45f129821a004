#pragma once

#include <filesystem>
#include <string_view>

namespace orv {

// The English language file as shipped, built into the program.
std::string_view englishLanguageFile();
inline constexpr std::string_view kEnglishFileName = "English.lng";

// Writes the shipped language files into the language folder where a file of
// that name (compared case-blind) is missing; one the user changed is kept.
// Throws fileio::FileError when a file cannot be written.
void installBundledLanguages(const std::filesystem::path& languageDir);

} // namespace orv
