#include "core/keying/cw_settings.h"

#include "core/util/text.h"

namespace orv::keying {

std::string comDevice(const Settings& s, int com) {
    const std::string mapped =
        text::trim(s.file().getStr(kSerialSection, "COM" + std::to_string(com)));
    if (!mapped.empty())
        return mapped;
    return "/dev/ttyS" + std::to_string(com > 0 ? com - 1 : 0);
}

void setComDevice(Settings& s, int com, const std::string& device) {
    s.file().write(kSerialSection, "COM" + std::to_string(com), device);
}

StrSetting CWTextKey(int k) {
    return {"CWQBF", "CWText" + std::to_string(k)};
}

CwSetup readCwSetup(const Settings& s) {
    CwSetup c;
    c.comCw = static_cast<int>(s.get(keys::COMCW));
    c.pinCw = s.get(keys::PinCW);
    c.pinCwPtt = s.get(keys::PinCWPtt);
    c.cwInterface = static_cast<int>(s.get(keys::CWInterface));
    c.wpm = s.get(keys::CWWPM);
    return c;
}

} // namespace orv::keying
