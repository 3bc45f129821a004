#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace orv {

// The English language file as shipped, built into the program.
std::string_view englishLanguageFile();
inline constexpr std::string_view kEnglishFileName = "English.lng";

// Writes the shipped language files into the language folder where a file of
// that name (compared case-blind) is missing; one the user changed is kept.
// They come from `shippedDir` (the Language folder of the shipped data) when
// given, and English from the copy built in when it is still missing.
// Throws fileio::FileError when a file cannot be written.
void installBundledLanguages(const std::filesystem::path& languageDir,
                             const std::optional<std::filesystem::path>& shippedDir = {});

} // namespace orv
