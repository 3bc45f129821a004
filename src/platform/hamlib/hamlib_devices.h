#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/rig/devices.h"
#include "core/rig/rig_settings.h"

// Rotators and rigs through Hamlib, linked directly. A device is made from
// the settings of its section: the model number, the serial device or, for
// the network models, the `rotctld`/`rigctld` at host:port. Hamlib's own
// port timeout bounds every call; the window calls them only from a
// DeviceLink worker.
namespace orv::platform {

std::unique_ptr<rig::Rotator> makeHamlibRotator(const rig::DeviceSettings& settings);
std::unique_ptr<rig::Rig> makeHamlibRig(const rig::DeviceSettings& settings);

// One entry of the model list the installed Hamlib offers.
struct HamlibModel {
    long long model = 0;
    std::string maker;
    std::string name;
};
// Sorted by maker, then name.
std::vector<HamlibModel> hamlibRotatorModels();
std::vector<HamlibModel> hamlibRigModels();

} // namespace orv::platform
