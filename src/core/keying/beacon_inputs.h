#pragma once

#include <filesystem>
#include <string_view>

#include "core/keying/beacon.h"
#include "core/settings/settings.h"

namespace orv::keying {

// The settings' part of a beacon's inputs: `BakeText`, `BakeAudioCW` and
// `BakeAudioVoice` of the operator `opCall` (a file name without a folder
// lies in `Audio` or `CWAudio`), the lines, the speed, `CWEND`, the pauses,
// `BakeArt` and `CWLoopEinAus`. The window adds its controls.
BeaconInputs beaconSettings(const Settings& s, std::string_view opCall,
                            const std::filesystem::path& audioFolder,
                            const std::filesystem::path& cwAudioFolder);

} // namespace orv::keying
