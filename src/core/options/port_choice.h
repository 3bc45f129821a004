#pragma once

#include <functional>
#include <string>

#include "core/settings/settings.h"

// The settings keep the old COM numbers (`COM`, `COMCW`); section
// `SerialDevices` maps a number to a Linux device, and a number without an
// entry stands for /dev/ttyS(n-1).
namespace orv::options {

// The COM number that stands for `device`: the one that already does, else
// the first number that stands for no device there is (`exists`), mapped to
// the device in `SerialDevices`.
int comNumberFor(Settings& s, const std::string& device,
                 const std::function<bool(const std::string&)>& exists);

} // namespace orv::options
