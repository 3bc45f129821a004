// The macro check and expansion of the CW window: any text as typed or
// stored in a memory, any field values of the main window. A refusal marks
// characters inside the text; a checked text passes the check again
// unchanged; the expansion ends, and with its tests on gives a refusal or
// a text without the tags it replaced.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/keying/cw_macros.h"
#include "core/util/text.h"
#include "fuzz_support.h"

using namespace orv;
using namespace orv::keying;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    const std::string typed = in.ConsumeRandomLengthString(512);

    const MacroCheck c = checkMacros(typed);
    // Typed text reaches the check from the widgets as valid UTF-8.
    if (!c.ok && text::isValidUtf8(typed)) {
        const int chars = static_cast<int>(text::length(typed));
        FUZZ_CHECK(c.selStart >= 0 && c.selLength >= 0, "a negative selection");
        FUZZ_CHECK(c.selStart + c.selLength <= chars, "the selection runs past the text");
        FUZZ_CHECK(c.selLength > 0, "an empty selection for a refusal");
    } else if (c.ok) {
        const MacroCheck again = checkMacros(c.text);
        FUZZ_CHECK(again.ok && again.text == c.text, "a checked text does not check again");
        FUZZ_CHECK(filterTyped(c.text) == c.text, "a checked text holds what cannot be typed");
    }
    (void)filterTyped(typed);
    (void)sendableAnsi(typed);

    QsoFields f;
    f.ownCall = in.ConsumeRandomLengthString(32);
    f.call = in.ConsumeRandomLengthString(32);
    f.ownLocator = in.ConsumeRandomLengthString(16);
    f.locator = in.ConsumeRandomLengthString(16);
    f.rstSent = in.ConsumeRandomLengthString(8);
    f.rstNr = in.ConsumeRandomLengthString(8);
    f.qsoNr = in.ConsumeRandomLengthString(8);
    f.time = in.ConsumeRandomLengthString(8);
    f.timeLocked = in.ConsumeBool();
    f.contestDate = DateTime{in.ConsumeIntegralInRange(1900, 2100),
                             in.ConsumeIntegralInRange(1, 12), in.ConsumeIntegralInRange(1, 28)};

    const std::string source = c.ok ? c.text : typed;
    const auto preview = expandMacros(source, f, false);
    FUZZ_CHECK(preview.ok(), "the preview refused a text");
    const auto sent = expandMacros(source, f, true);
    if (sent.ok()) {
        FUZZ_CHECK(*sent == *preview, "the send and the preview differ");
        (void)sendableAnsi(*sent);
    } else {
        FUZZ_CHECK(sent.failure().text == 360, "a refusal without IText(360)");
    }
    return 0;
}
