#include <charconv>
#include <string>

#include "cli/cli.h"
#include "core/locator/locator.h"

// qrb OWN OTHER: distance and bearing between two locators, as the entry row
// shows them: "<km> <Grad> <GradDez>".
namespace orv::cli {
namespace {

std::string mitEinerStelle(float v) {
    char buf[32];
    const auto r =
        std::to_chars(buf, buf + sizeof buf, static_cast<double>(v), std::chars_format::fixed, 1);
    return std::string(buf, r.ptr);
}

int run(Context& ctx, const Args& args) {
    if (args.positional.size() != 2)
        return ctx.usage("qrb OWN OTHER");
    std::string own = args.positional[0], other = args.positional[1];
    const LocErgebnis e = LocBerechnen(own, other);
    if (!e.ok())
        return ctx.refuse(refuse(2, "locator", own + " " + other));
    ctx.out << static_cast<long>(e.km) << " " << e.Grad << " " << mitEinerStelle(e.GradDez) << "\n";
    return kOk;
}

const bool registered = registerCommand(
    {"qrb", "OWN OTHER", "distance (km) and bearing from locator OWN to OTHER", {}, &run});

} // namespace
} // namespace orv::cli
