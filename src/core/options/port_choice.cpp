#include "core/options/port_choice.h"

#include "core/keying/cw_settings.h"
#include "core/util/text.h"

namespace orv::options {

int comNumberFor(Settings& s, const std::string& device,
                 const std::function<bool(const std::string&)>& exists) {
    // COM 1 to 255 are the numbers the old port lists knew.
    constexpr int kLast = 255;
    for (int n = 1; n <= kLast; ++n)
        if (keying::comDevice(s, n) == device)
            return n;
    for (int n = 1; n <= kLast; ++n) {
        const bool mapped =
            !text::trim(s.file().getStr(keying::kSerialSection, "COM" + std::to_string(n))).empty();
        if (!mapped && !exists(keying::comDevice(s, n))) {
            keying::setComDevice(s, n, device);
            return n;
        }
    }
    return 0;
}

} // namespace orv::options
