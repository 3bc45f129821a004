#include <cstdio>
#include <filesystem>
#include <string>

#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/rig/band_plan.h"
#include "core/rig/rig_settings.h"
#include "core/rig/turn_target.h"
#include "core/settings/settings.h"
#include "platform/hamlib/hamlib_devices.h"

// rotator turn LOCATOR|DEGREES, rotator position, rig status: the station's
// rotator and rig from scripts, configured as the window uses them (sections
// `Rotator` and `Rig`) or pointed at a daemon with --rotctld / --rigctld.
namespace orv::cli {
namespace {

Settings settingsOf(const Context& ctx) {
    return Settings{IniFile{ctx.paths.iniPath()}};
}

std::string oneDecimal(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.1f", v);
    return buf;
}

// The device settings of a section, or the daemon of the option; nothing
// (with the refusal printed) for a malformed HOST:PORT.
std::optional<rig::DeviceSettings>
deviceFor(Context& ctx, const Args& args, const std::string& option, bool rotator, int& exitCode) {
    if (const auto daemon = args.get(option)) {
        const auto hostPort = rig::parseHostPort(*daemon);
        if (!hostPort) {
            exitCode = ctx.fail(1243, kRefused, *daemon);
            return std::nullopt;
        }
        return rig::DeviceSettings{true, rig::kNetworkModel, *hostPort, 0};
    }
    const Settings s = settingsOf(ctx);
    return rotator ? rig::readRotatorSettings(s) : rig::readRigSettings(s);
}

std::optional<std::string> ownLocator(Context& ctx, const Args& args, int& exitCode) {
    if (const auto name = args.get("log")) {
        auto opened = openNamedLog(ctx, *name, exitCode);
        if (!opened)
            return std::nullopt;
        return opened->myLocator;
    }
    return settingsOf(ctx).get(keys::MyLocator);
}

int rotator(Context& ctx, const Args& args) {
    const std::string usage = "usage: orvanta-tool rotator turn LOCATOR|DEGREES [--rotctld "
                              "HOST:PORT] [--log NAME] | rotator position [--rotctld HOST:PORT]\n";
    const bool turn = !args.positional.empty() && args.positional[0] == "turn";
    const bool position = !args.positional.empty() && args.positional[0] == "position";
    if (!(turn && args.positional.size() == 2) && !(position && args.positional.size() == 1)) {
        ctx.err << usage;
        return kRefused;
    }
    int code = kOk;
    const auto settings = deviceFor(ctx, args, "rotctld", true, code);
    if (!settings)
        return code;
    std::optional<double> target;
    if (turn) {
        const auto own = ownLocator(ctx, args, code);
        if (!own)
            return code;
        target = rig::turnTarget(*own, args.positional[1]);
        if (!target)
            return ctx.fail(1241, kRefused, args.positional[1]);
    }
    try {
        const auto device = platform::makeHamlibRotator(*settings);
        device->open();
        if (target) {
            device->turnTo(*target);
            ctx.out << oneDecimal(*target) << "\n";
        } else {
            ctx.out << oneDecimal(device->position()) << "\n";
        }
        device->close();
    } catch (const rig::DeviceError& e) {
        return ctx.fail(1239, kFailure, settings->device + ": " + e.what());
    }
    return kOk;
}

int rigStatus(Context& ctx, const Args& args) {
    if (args.positional.size() != 1 || args.positional[0] != "status") {
        ctx.err << "usage: orvanta-tool rig status [--rigctld HOST:PORT]\n";
        return kRefused;
    }
    int code = kOk;
    const auto settings = deviceFor(ctx, args, "rigctld", false, code);
    if (!settings)
        return code;
    const rig::TransverterOffsets offsets = rig::readTransverterOffsets(settingsOf(ctx));
    try {
        const auto device = platform::makeHamlibRig(*settings);
        device->open();
        const rig::RigReading r = device->read();
        device->close();
        const auto b = rig::bandOfFrequency(r.freqHz, offsets);
        ctx.out << r.freqHz << "\t" << (b ? std::string(band(*b).boxText) : "-") << "\t"
                << rig::programMode(r.mode) << "\n";
    } catch (const rig::DeviceError& e) {
        return ctx.fail(1240, kFailure, settings->device + ": " + e.what());
    }
    return kOk;
}

const bool registeredRotator = registerCommand(
    {"rotator",
     "turn LOCATOR|DEGREES [--rotctld HOST:PORT] [--log NAME] | position [--rotctld HOST:PORT]",
     "turn the rotator to a bearing or to the bearing of a locator (printed), or print its "
     "azimuth",
     {},
     &rotator});

const bool registeredRig = registerCommand(
    {"rig",
     "status [--rigctld HOST:PORT]",
     "print the rig's frequency in Hz, the band it stands for and the mode, separated by tabs",
     {},
     &rigStatus});

} // namespace
} // namespace orv::cli
