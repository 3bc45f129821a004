// The language file loader: any bytes as a language file. A file without
// the marker changes no row; whatever loads writes out as a template that
// reads back to the same table.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "core/i18n/language.h"
#include "core/i18n/texts.h"
#include "fuzz_support.h"

using namespace orv;

namespace {

bool sameRows(const Texts& a, const Texts& b) {
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        if (a(n) != b(n))
            return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    static const Texts defaults;

    Texts texts;
    std::istringstream in(bytes);
    const auto r = texts.loadLanguage(in);
    if (r.status == Texts::LoadStatus::Invalid || r.status == Texts::LoadStatus::NoFile)
        FUZZ_CHECK(sameRows(texts, defaults), "a refused language file changed the table");
    if (r.status == Texts::LoadStatus::Truncated)
        FUZZ_CHECK(r.badRow > Texts::kMaxRow, "a read cut short by a row that fits");
    (void)languageProblem(r);

    // The same bytes from a file take the same road.
    const auto path = fuzz::workDir() / "Fuzz.lng";
    fuzz::writeBytes(path, bytes);
    Texts fromFile;
    const auto rf = fromFile.loadLanguageFile(path);
    FUZZ_CHECK(rf.status == r.status, "file and stream loads disagree");
    FUZZ_CHECK(sameRows(fromFile, texts), "file and stream loads disagree on rows");

    // The template of what was loaded reads back unchanged.
    // Empty rows are left out of the template, so it is read over an
    // empty table.
    Texts again;
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        again.set(n, "");
    std::istringstream tpl(texts.languageTemplate());
    const auto rt = again.loadLanguage(tpl);
    FUZZ_CHECK(rt.status == Texts::LoadStatus::Loaded, "the template was refused");
    FUZZ_CHECK(sameRows(again, texts), "the template did not read back to the same table");
    return 0;
}
