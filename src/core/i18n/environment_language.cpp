#include "core/i18n/environment_language.h"

#include <array>
#include <string_view>
#include <vector>

#include "core/i18n/bundled_languages.h"
#include "core/i18n/language.h"
#include "core/util/text.h"

namespace orv {
namespace {

struct LanguageNames {
    std::string_view code;
    std::array<std::string_view, 3> names; // English name, own name, own name in ASCII
};

// The names a translator is likely to give a language file.
constexpr LanguageNames kNames[] = {
    {"en", {"English", "", ""}},
    {"fr", {"French", "Français", "Francais"}},
    {"es", {"Spanish", "Español", "Espanol"}},
    {"it", {"Italian", "Italiano", ""}},
    {"nl", {"Dutch", "Nederlands", ""}},
    {"pl", {"Polish", "Polski", ""}},
    {"cs", {"Czech", "Čeština", "Cestina"}},
    {"sk", {"Slovak", "Slovenčina", "Slovencina"}},
    {"sl", {"Slovenian", "Slovenščina", "Slovenscina"}},
    {"hr", {"Croatian", "Hrvatski", ""}},
    {"hu", {"Hungarian", "Magyar", ""}},
    {"da", {"Danish", "Dansk", ""}},
    {"sv", {"Swedish", "Svenska", ""}},
    {"nb", {"Norwegian", "Norsk", ""}},
    {"nn", {"Norwegian", "Norsk", ""}},
    {"no", {"Norwegian", "Norsk", ""}},
    {"fi", {"Finnish", "Suomi", ""}},
    {"pt", {"Portuguese", "Português", "Portugues"}},
    {"ro", {"Romanian", "Română", "Romana"}},
    {"ru", {"Russian", "Русский", "Russkij"}},
    {"uk", {"Ukrainian", "Українська", "Ukrainska"}},
    {"ja", {"Japanese", "日本語", "Nihongo"}},
};

std::string languageCode(std::string_view locale) {
    const auto end = locale.find_first_of("_.@");
    return text::lower(locale.substr(0, end));
}

bool isCLocale(std::string_view locale) {
    const std::string code = languageCode(locale);
    return code.empty() || code == "c" || code == "posix";
}

std::string stem(const std::string& file) {
    return file.substr(0, file.size() - 4); // without ".lng"
}

// The shipped file for one entry ("fr_FR.UTF-8", "fr"): by the language's
// names, or named after the locale or its language code.
std::optional<std::string> fileFor(std::string_view locale,
                                   std::span<const std::string> shippedFiles) {
    const std::string code = languageCode(locale);
    const std::string full{locale.substr(0, locale.find_first_of(".@"))};
    for (const std::string& file : shippedFiles) {
        const std::string name = stem(file);
        if (text::iequals(name, code) || text::iequals(name, full))
            return file;
        for (const LanguageNames& l : kNames)
            if (l.code == code)
                for (std::string_view n : l.names)
                    if (!n.empty() && text::iequals(name, n))
                        return file;
    }
    return std::nullopt;
}

std::vector<std::string> split(const std::string& list) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    while (from <= list.size()) {
        const auto to = std::min(list.find(':', from), list.size());
        if (to > from)
            parts.push_back(list.substr(from, to - from));
        from = to + 1;
    }
    return parts;
}

} // namespace

LocaleEnvironment
localeEnvironment(const std::function<std::optional<std::string>(const char*)>& lookup) {
    auto get = [&](const char* name) { return lookup(name).value_or(std::string()); };
    return {get("LC_ALL"), get("LC_MESSAGES"), get("LANG"), get("LANGUAGE")};
}

std::optional<std::string> environmentLanguage(const LocaleEnvironment& env,
                                               std::span<const std::string> shippedFiles) {
    const std::string& locale = !env.lcAll.empty()        ? env.lcAll
                                : !env.lcMessages.empty() ? env.lcMessages
                                                          : env.lang;
    // Under the C locale the desktop ignores LANGUAGE too: scripts and
    // servers keep the program's default.
    if (isCLocale(locale))
        return std::nullopt;
    std::vector<std::string> wanted = split(env.language);
    wanted.push_back(locale);
    for (const std::string& entry : wanted) {
        if (isCLocale(entry))
            continue;
        if (languageCode(entry) == "de")
            return std::string(kDefaultLanguage);
        if (auto file = fileFor(entry, shippedFiles))
            return file;
    }
    for (const std::string& file : shippedFiles)
        if (text::iequals(file, kEnglishFileName))
            return file;
    return std::nullopt;
}

std::optional<std::string> adoptEnvironmentLanguage(Settings& settings,
                                                    const std::filesystem::path& languageDir,
                                                    const LocaleEnvironment& env) {
    if (settings.file().exists())
        return std::nullopt;
    const std::vector<std::string> files = languageFiles(languageDir);
    auto chosen = environmentLanguage(env, files);
    if (chosen)
        settings.set(keys::Language, *chosen);
    return chosen;
}

} // namespace orv
