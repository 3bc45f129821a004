#include <QGuiApplication>
#include <QString>
#include <string>

#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/capture/band_state.h"
#include "core/locator/locator.h"
#include "core/map/map_band.h"
#include "core/util/text.h"
#include "scene/coastlines.h"
#include "scene/map_image.h"
#include "scene/map_scene.h"

// map LOG --band BAND -o FILE.png|FILE.svg [--size WxH] [--radius KM]: the
// band's map as the window draws it, centred on the own locator.
namespace orv::cli {
namespace {

std::optional<QSize> parseSize(const std::string& s) {
    const auto x = s.find_first_of("xX");
    if (x == std::string::npos)
        return std::nullopt;
    const auto w = text::wholeNumber(s.substr(0, x)), h = text::wholeNumber(s.substr(x + 1));
    if (!w || !h || *w < 16 || *h < 16 || *w > 10000 || *h > 10000)
        return std::nullopt;
    return QSize(static_cast<int>(*w), static_cast<int>(*h));
}

int run(Context& ctx, const Args& args) {
    // Fonts need a GUI application; the tool never shows a window, so it
    // paints offscreen whatever display there is.
    std::optional<QGuiApplication> app;
    if (!QGuiApplication::instance()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "orvanta-tool";
        static char* argv[] = {name, nullptr};
        app.emplace(argc, argv);
    }
    int code = kOk;
    auto arg = logArgument(ctx, args, true, code);
    if (!arg)
        return code;
    const std::string out = text::trim(args.getOr("o", ""));
    if (out.empty())
        return ctx.fail(1289, kRefused);
    const QString path = QString::fromStdString(out);
    if (scene::imageKindOf(path) == scene::ImageKind::Unknown)
        return ctx.fail(1277, kRefused, out);
    const std::string sizeText = args.getOr("size", "1200x900");
    const auto size = parseSize(sizeText);
    if (!size)
        return ctx.fail(1275, kRefused, sizeText);
    std::optional<long long> radius;
    if (args.has("radius")) {
        radius = text::wholeNumber(args.getOr("radius", ""));
        if (!radius || *radius < 1 || *radius > 20100)
            return ctx.fail(1276, kRefused, args.getOr("radius", ""));
    }
    std::string own = LocErgaenzen(text::upper(arg->opened.myLocator));
    if (text::length(own) == 4)
        own += "LL";
    if (!LocOK(own))
        return ctx.fail(1293, kRefused, arg->opened.myLocator);

    ContestLog::BandSnapshot snap = arg->opened.log.bandSnapshot(arg->band);
    BandState state;
    state.load(arg->band, std::move(snap.rows), snap.totals, own, false);
    scene::MapScene scene(LocKoordinaten(own), ctx.texts);
    scene.setBand(map::mapBand(state));
    scene.setCoastlines(scene::loadCoastlines());
    if (radius)
        scene.fitRadius(QSizeF(*size), static_cast<double>(*radius));
    else
        scene.fitBand(QSizeF(*size));
    if (!scene::writeMapImage(scene, path))
        return ctx.fail(1278, kFailure, out);
    return kOk;
}

const bool registered =
    registerCommand({"map",
                     "LOG --band BAND -o FILE.png|FILE.svg [--size WxH] [--radius KM]",
                     "draw the band's map around the own locator as a PNG or SVG image",
                     {},
                     &run});

} // namespace
} // namespace orv::cli
