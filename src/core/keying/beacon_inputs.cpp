#include "core/keying/beacon_inputs.h"

#include <cmath>
#include <exception>

#include "core/keying/cw_macros.h"
#include "core/util/text.h"

namespace orv::keying {
namespace {

std::filesystem::path inFolder(const std::filesystem::path& folder, const std::string& name) {
    const std::string n = text::trim(name);
    if (n.empty())
        return {};
    const std::filesystem::path p(n);
    return p.is_absolute() ? p : folder / p;
}

} // namespace

BeaconInputs beaconSettings(const Settings& s, std::string_view opCall,
                            const std::filesystem::path& audioFolder,
                            const std::filesystem::path& cwAudioFolder) {
    BeaconInputs in;
    const std::string call = text::upper(text::trim(opCall));
    for (const OpCall& op : s.opCalls()) {
        if (text::upper(op.call) != call)
            continue;
        in.bakeText = sendableAnsi(op.beaconText);
        in.bakeAudioVoice = inFolder(audioFolder, op.voiceFile);
        in.bakeAudioCW = inFolder(cwAudioFolder, op.toneFile);
        break;
    }
    in.mode3St = s.get(keys::Mode3St);
    in.cwInterface = static_cast<int>(s.get(keys::CWInterface));
    in.bakeArt = s.get(keys::BakeArt) == 0 ? 0 : 1;
    in.cwLoop = s.get(keys::CWLoopEinAus);
    in.com = static_cast<int>(s.get(keys::COM));
    in.pin = s.get(keys::PIN);
    in.comCw = static_cast<int>(s.get(keys::COMCW));
    in.pinCw = s.get(keys::PinCW);
    in.pinCwPtt = s.get(keys::PinCWPtt);
    in.wpm = static_cast<int>(s.get(keys::CWWPM));
    in.cwEnd = sendableAnsi(s.get(keys::CWEND));
    in.loopPause = static_cast<int>(s.get(keys::LoopPause));
    in.cwLoopPause = static_cast<int>(s.get(keys::CWLoopPause));
    in.cwEndFile = cwAudioFolder / "CWEnd.wav";
    return in;
}

Result<std::optional<int>> parsePauseSeconds(std::string_view answer) {
    const std::string a = text::trim(answer);
    if (a.empty())
        return std::optional<int>{};
    std::size_t used = 0;
    double v = 0;
    try {
        v = std::stod(a, &used);
    } catch (const std::exception&) {
        return refuse(225);
    }
    if (used != a.size() || !std::isfinite(v))
        return refuse(225);
    const double whole = std::trunc(v);
    if (whole < 1 || whole > 60)
        return refuse(225);
    return std::optional<int>{static_cast<int>(whole)};
}

} // namespace orv::keying
