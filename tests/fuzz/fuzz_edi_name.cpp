// EDIDateiname: any bytes as the EDI file whose upload name is made from
// its header. The name is refused with IText(327) or is one plain file name
// ending in ".EDI": no folder, no control character, valid UTF-8.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/submission/edi.h"
#include "core/util/text.h"
#include "fuzz_support.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto path = fuzz::workDir() / "Entry.EDI";
    fuzz::writeBytes(path, bytes);
    const auto r = EDIDateiname(path);
    if (!r.ok()) {
        FUZZ_CHECK(r.failure().text == 327, "a refusal without IText(327)");
        return 0;
    }
    const std::string& name = *r;
    FUZZ_CHECK(name.size() > 4 && name.substr(name.size() - 4) == ".EDI", "no .EDI at the end");
    FUZZ_CHECK(text::isValidUtf8(name), "the name is no valid UTF-8");
    for (const char c : name) {
        FUZZ_CHECK(c != '/' && c != '\\', "the upload name holds a folder");
        FUZZ_CHECK(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F,
                   "the upload name holds a control character");
    }
    return 0;
}
