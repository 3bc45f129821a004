#include "core/i18n/bundled_languages.h"

#include <string>

#include "core/i18n/language.h"
#include "core/util/file_io.h"

namespace orv {

void installBundledLanguages(const std::filesystem::path& languageDir) {
    if (!findLanguageFile(languageDir, kEnglishFileName))
        fileio::writeAtomic(languageDir / kEnglishFileName, std::string(englishLanguageFile()));
}

} // namespace orv
