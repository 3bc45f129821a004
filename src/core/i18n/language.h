#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/util/result.h"

// Which language the program speaks: the language menu's entries, the choice
// stored in `Language` of `QB-OPTION`, and loading it over the text table.
namespace orv {

// The first entry of the language menu: the built-in table.
inline constexpr std::string_view kDefaultLanguage = "<Default>";

// The language files ("*.lng", any case) of the language folder, sorted by
// name, case-blind; the menu entries after kDefaultLanguage.
std::vector<std::string> languageFiles(const std::filesystem::path& languageDir);

// The file of that name in the language folder, its name compared
// case-blind; nothing for a name with a folder in it.
std::optional<std::filesystem::path> findLanguageFile(const std::filesystem::path& languageDir,
                                                      std::string_view name);

// At start-up: the stored language over the table, unless the key is empty
// or "<Default>". A file that is gone leaves the table as it is (NoFile).
Texts::LoadResult loadChosenLanguage(Texts& texts, const Settings& settings,
                                     const std::filesystem::path& languageDir);

// A language picked from the menu: the choice is stored first; then the file
// is loaded over the current table, so that rows it lacks keep the former
// language, or, for "<Default>" or a file that is gone, the built-in table is
// restored (reported as NoFile).
Texts::LoadResult chooseLanguage(Texts& texts, Settings& settings,
                                 const std::filesystem::path& languageDir, std::string_view name);

// What to tell the user about a load: IText(230) for a file without the
// marker line, and for one cut short by a row number above the table (with that
// number as detail; the rows before it are in use); nothing otherwise.
std::optional<Failure> languageProblem(const Texts::LoadResult& result);

} // namespace orv
