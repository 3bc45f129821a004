#include "core/rig/turn_target.h"

#include <charconv>
#include <string>

#include "core/locator/locator.h"
#include "core/util/text.h"

namespace orv::rig {

std::optional<double> turnTarget(std::string_view ownLocator, std::string_view target) {
    const std::string t = text::trim(target);
    double deg = 0;
    const auto r = std::from_chars(t.data(), t.data() + t.size(), deg);
    if (!t.empty() && r.ec == std::errc() && r.ptr == t.data() + t.size())
        return deg >= 0.0 && deg <= 360.0 ? std::optional<double>(deg) : std::nullopt;
    std::string own(ownLocator), other(t);
    const LocErgebnis e = LocBerechnen(own, other);
    if (!e.ok())
        return std::nullopt;
    return static_cast<double>(e.GradDez);
}

} // namespace orv::rig
