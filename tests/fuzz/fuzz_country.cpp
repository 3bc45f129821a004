// The country list import, CTY.DAT or ARRL.CTY by ORV_COUNTRY_FORMAT: any
// bytes as the country file, imported over a list that is already there. A
// refused file leaves the list's file as it was; an accepted one gives a
// list that loads and answers lookups.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/reference/country_list.h"
#include "fuzz_support.h"

using namespace orv;

namespace {

constexpr CountryFormat kFormat = ORV_COUNTRY_FORMAT;

// A small list in the file's own format, imported before each input.
constexpr const char* kFormerCty =
    "Austria:                  15:  28:  EU:   47.33:   -13.33:    -1.0:  OE:\n"
    "    OE,=OE2XYZ/P;\n";
constexpr const char* kFormerArrl = "Austria:15:28:EU:47.33:-13.33:-1.0:OE:\nOE,OE0;\n";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto dir = fuzz::workDir() / "country";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    const auto db = dir / "QBCountry.sqlite";

    const auto former =
        importCountryText(db, kFormat == CountryFormat::CtyDat ? kFormerCty : kFormerArrl, kFormat);
    FUZZ_CHECK(former.ok(), "the former list was refused");
    const std::string before = fuzz::folderBytes(dir);

    const auto r = importCountryText(db, bytes, kFormat);
    if (!r.ok()) {
        FUZZ_CHECK(r.failure().text == 84, "a refusal without IText(84)");
        FUZZ_CHECK(fuzz::folderBytes(dir) == before, "a refused country file changed the list");
        return 0;
    }
    const CountryList list = CountryList::load(db);
    FUZZ_CHECK(list.prefixCount() <= r->prefixes.size(), "more prefixes loaded than imported");
    for (const auto& p : r->prefixes) {
        (void)list.lookup(p.Pre);
        (void)list.lookup(p.Pre + "1ABC/P");
        (void)list.hasPrefixesFor(p.Pre);
    }
    return 0;
}
