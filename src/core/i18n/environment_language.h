#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "core/settings/settings.h"

// The language of a first start, taken from the desktop's locale settings.
namespace orv {

// The locale variables as the environment holds them; an empty value counts
// as unset, as it does for the C library.
struct LocaleEnvironment {
    std::string lcAll;      // LC_ALL
    std::string lcMessages; // LC_MESSAGES
    std::string lang;       // LANG
    std::string language;   // LANGUAGE, a list separated by ":"
};

LocaleEnvironment
localeEnvironment(const std::function<std::optional<std::string>(const char*)>& lookup);

// What a menu choice would store for the desktop's language: "<Default>" for
// German, the shipped file of another language (English for a language none
// is shipped for), nothing for an unset, "C" or "POSIX" locale. The messages
// locale is LC_ALL, else LC_MESSAGES, else LANG; unless it is "C", the
// entries of LANGUAGE come first, and the first one the program speaks wins.
std::optional<std::string> environmentLanguage(const LocaleEnvironment& env,
                                               std::span<const std::string> shippedFiles);

// The first start on a data folder: when the settings file does not exist
// yet, stores the desktop's language as the menu would and returns it. Called
// before anything else writes the file; a folder with a settings file, and an
// unset or "C" locale, are left as they are.
std::optional<std::string> adoptEnvironmentLanguage(Settings& settings,
                                                    const std::filesystem::path& languageDir,
                                                    const LocaleEnvironment& env);

} // namespace orv
