#include "core/i18n/language.h"

#include <algorithm>
#include <system_error>

#include "core/util/text.h"

namespace orv {
namespace fs = std::filesystem;

std::vector<std::string> languageFiles(const fs::path& languageDir) {
    std::vector<std::string> names;
    std::error_code ec;
    for (fs::directory_iterator it(languageDir, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.size() > 4 && text::endsWith(text::lower(name), ".lng") && it->is_regular_file(ec))
            names.push_back(name);
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const auto la = text::lower(a), lb = text::lower(b);
        return la != lb ? la < lb : a < b;
    });
    return names;
}

std::optional<fs::path> findLanguageFile(const fs::path& languageDir, std::string_view name) {
    if (name.empty() || name.find('/') != std::string_view::npos || name == "." || name == "..")
        return std::nullopt;
    std::error_code ec;
    if (fs::is_regular_file(languageDir / name, ec))
        return languageDir / name;
    for (fs::directory_iterator it(languageDir, ec), end; !ec && it != end; it.increment(ec))
        if (text::iequals(it->path().filename().string(), name) && it->is_regular_file(ec))
            return it->path();
    return std::nullopt;
}

Texts::LoadResult loadChosenLanguage(Texts& texts, const Settings& settings,
                                     const fs::path& languageDir) {
    const std::string name = settings.get(keys::Language);
    if (name.empty() || name == kDefaultLanguage)
        return {Texts::LoadStatus::NoFile};
    const auto file = findLanguageFile(languageDir, name);
    return file ? texts.loadLanguageFile(*file) : Texts::LoadResult{Texts::LoadStatus::NoFile};
}

Texts::LoadResult chooseLanguage(Texts& texts, Settings& settings, const fs::path& languageDir,
                                 std::string_view name) {
    settings.set(keys::Language, name);
    if (name != kDefaultLanguage)
        if (const auto file = findLanguageFile(languageDir, name))
            return texts.loadLanguageFile(*file);
    texts.loadDefaults();
    return {Texts::LoadStatus::NoFile};
}

std::optional<Failure> languageProblem(const Texts::LoadResult& result) {
    switch (result.status) {
    case Texts::LoadStatus::Invalid:
        return Failure{230, {}, {}};
    case Texts::LoadStatus::Truncated:
        return Failure{
            230, {}, std::to_string(result.badRow) + " > " + std::to_string(Texts::kMaxRow)};
    case Texts::LoadStatus::Loaded:
    case Texts::LoadStatus::NoFile:
        break;
    }
    return std::nullopt;
}

} // namespace orv
