#include "core/i18n/bundled_languages.h"

#include <string>

#include "core/i18n/language.h"
#include "core/util/file_io.h"

namespace orv {

void installBundledLanguages(const std::filesystem::path& languageDir,
                             const std::optional<std::filesystem::path>& shippedDir) {
    if (shippedDir)
        for (const std::string& name : languageFiles(*shippedDir))
            if (!findLanguageFile(languageDir, name))
                fileio::writeAtomic(languageDir / name, fileio::readAll(*shippedDir / name));
    if (!findLanguageFile(languageDir, kEnglishFileName))
        fileio::writeAtomic(languageDir / kEnglishFileName, std::string(englishLanguageFile()));
}

} // namespace orv
