// The EDI editor's load: any bytes as the file opened in `Form16`. A file
// over the limit is refused with IText(367); any other gives valid UTF-8
// with "\n" line breaks only, the way back to bytes is stable, and a file
// with one kind of line end comes back byte for byte, as a save without a
// change writes it.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/submission/edi_editor.h"
#include "core/util/text.h"
#include "fuzz_support.h"

using namespace orv;

namespace {

// Only CR LF or only LF between the lines (or no line end at all).
bool oneKindOfLineEnd(const std::string& s) {
    bool crlf = false, lf = false;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\r') {
            if (i + 1 >= s.size() || s[i + 1] != '\n')
                return false;
            crlf = true;
            ++i;
        } else if (s[i] == '\n') {
            lf = true;
        }
    }
    return !(crlf && lf);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto path = fuzz::workDir() / "Editor.EDI";
    fuzz::writeBytes(path, bytes);
    const auto r = loadEdiEditor(path);
    if (!r.ok()) {
        FUZZ_CHECK(r.failure().text == 367, "a refusal without IText(367)");
        FUZZ_CHECK(size > kEdiEditorLimit, "a file within the limit refused");
        return 0;
    }
    FUZZ_CHECK(size <= kEdiEditorLimit, "a file over the limit opened");
    const EdiEditorText& t = *r;
    FUZZ_CHECK(text::isValidUtf8(t.text), "the editor text is no valid UTF-8");
    FUZZ_CHECK(t.text.find('\r') == std::string::npos, "a CR left in the editor text");
    const std::string saved = encodeEdiEditor(t);
    const EdiEditorText again = decodeEdiEditor(saved);
    FUZZ_CHECK(again.text == t.text, "a save without a change reads back to another text");
    FUZZ_CHECK(encodeEdiEditor(again) == saved, "a second save writes other bytes");
    if (oneKindOfLineEnd(bytes))
        FUZZ_CHECK(saved == bytes, "a save without a change alters the file");
    return 0;
}
