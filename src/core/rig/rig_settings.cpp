#include "core/rig/rig_settings.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "core/util/text.h"

namespace orv::rig {
namespace {

DeviceSettings readSection(const Settings& s, const std::string& sec) {
    DeviceSettings d;
    d.enabled = s.get(BoolSetting{sec, "Enabled"});
    d.model = s.get(IntSetting{sec, "Model", kNetworkModel, 1, 99999999});
    d.device = s.get(StrSetting{sec, "Device"});
    d.speed = s.get(IntSetting{sec, "Speed", 0, 0, 10'000'000});
    return d;
}

void writeSection(Settings& s, const std::string& sec, const DeviceSettings& d) {
    s.set(BoolSetting{sec, "Enabled"}, d.enabled);
    s.set(IntSetting{sec, "Model"}, d.model);
    s.set(StrSetting{sec, "Device"}, d.device);
    s.set(IntSetting{sec, "Speed"}, d.speed);
}

StrSetting offsetKey(int b) {
    return {"Rig", "Offset" + std::string(band(b).boxText)};
}

} // namespace

DeviceSettings readRotatorSettings(const Settings& s) {
    return readSection(s, "Rotator");
}
void writeRotatorSettings(Settings& s, const DeviceSettings& d) {
    writeSection(s, "Rotator", d);
}
DeviceSettings readRigSettings(const Settings& s) {
    return readSection(s, "Rig");
}
void writeRigSettings(Settings& s, const DeviceSettings& d) {
    writeSection(s, "Rig", d);
}

std::optional<double> parseOffsetMHz(std::string_view text) {
    std::string t = text::trim(text);
    for (char& c : t)
        if (c == ',')
            c = '.';
    if (t.empty())
        return std::nullopt;
    double v = 0;
    const auto r = std::from_chars(t.data(), t.data() + t.size(), v);
    if (r.ec != std::errc() || r.ptr != t.data() + t.size() || !std::isfinite(v) ||
        std::fabs(v) > 100000.0)
        return std::nullopt;
    return v;
}

TransverterOffsets readTransverterOffsets(const Settings& s) {
    TransverterOffsets o{};
    for (int b = 0; b < kBandCount; ++b)
        o[static_cast<std::size_t>(b)] = parseOffsetMHz(s.get(offsetKey(b))).value_or(0.0);
    return o;
}

void writeTransverterOffsets(Settings& s, const TransverterOffsets& offsets) {
    for (int b = 0; b < kBandCount; ++b) {
        const double v = offsets[static_cast<std::size_t>(b)];
        char buf[32] = "";
        if (v != 0.0)
            std::snprintf(buf, sizeof buf, "%.6g", v);
        s.set(offsetKey(b), buf);
    }
}

std::optional<std::string> parseHostPort(std::string_view text) {
    const std::string t = text::trim(text);
    const auto colon = t.rfind(':');
    if (colon == std::string::npos || colon == 0)
        return std::nullopt;
    const std::string port = t.substr(colon + 1);
    if (!text::isInteger(port))
        return std::nullopt;
    const long long p = text::leadingInt(port);
    if (p < 1 || p > 65535)
        return std::nullopt;
    return t;
}

} // namespace orv::rig
