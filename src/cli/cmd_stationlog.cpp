// stationlog-new, -add, -list, -delete, -adif: the station log without its
// window, with the window's checks and texts.
#include <filesystem>
#include <limits>
#include <optional>
#include <string>

#include "cli/cli.h"
#include "core/stationlog/adif_export.h"
#include "core/stationlog/entry_check.h"
#include "core/stationlog/station_log.h"
#include "core/submission/export_file.h"
#include "core/util/text.h"

namespace orv::cli {
namespace {

// The option that stands for each entry box, for messages that name a box.
struct BoxOption {
    const char* box;
    const char* option;
    std::string StationEntry::*member;
};
const BoxOption kBoxes[] = {
    {"Text1", "date", &StationEntry::date},
    {"Text2", "time", &StationEntry::time},
    {"Text3", "call", &StationEntry::call},
    {"Text4", "rst-rx", &StationEntry::rstRx},
    {"Text5", "rst-tx", &StationEntry::rstTx},
    {"Text6", "locator", &StationEntry::locator},
    {"Combo6", "qrg", &StationEntry::qrgTx},
    {"Combo7", "qrg-rx", &StationEntry::qrgRx},
    {"Combo4", "mode", &StationEntry::txMode},
    {"Combo5", "rxmode", &StationEntry::rxMode},
    {"Combo1", "prop", &StationEntry::prop},
    {"Combo2", "qsl", &StationEntry::qsl},
    {"Text7", "manager", &StationEntry::qslManager},
    {"Text8", "name", &StationEntry::name},
    {"Combo3", "mycall", &StationEntry::myCall},
    {"Combo8", "mylocator", &StationEntry::myLocator},
    {"Combo10", "power", &StationEntry::power},
    {"Combo9", "antenna", &StationEntry::antenne},
    {"Text10", "note", &StationEntry::note},
    {"", "qsl-rx", &StationEntry::qslRx},
};

int usage(Context& ctx, const char* text) {
    return ctx.usage(text);
}

std::optional<StationLog> openNamed(Context& ctx, const std::string& name, int& code) {
    auto file = stationLogFile(ctx.paths.stationLogPath(), name);
    if (!file) {
        code = ctx.refuse(file.failure());
        return std::nullopt;
    }
    auto log = StationLog::open(file.value());
    if (!log) {
        code = ctx.refuse(log.failure());
        return std::nullopt;
    }
    return std::move(log).value();
}

int runNew(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return usage(ctx, "stationlog-new NAME");
    auto file = stationLogFile(ctx.paths.stationLogPath(), args.positional[0]);
    if (!file)
        return ctx.refuse(file.failure());
    if (std::filesystem::exists(file.value()))
        return ctx.refuse(refuse(8, {}, file.value().string()));
    StationLog::create(file.value());
    ctx.out << file.value().string() << "\n";
    return kOk;
}

int runAdd(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return usage(ctx, "stationlog-add NAME --call C --date YYYY-MM-DD --time HH:MM --qrg F "
                          "--mode M [...]");
    int code = kOk;
    auto log = openNamed(ctx, args.positional[0], code);
    if (!log)
        return code;
    StationEntry e;
    for (const auto& b : kBoxes)
        e.*b.member = args.getOr(b.option, "");
    auto checked = checkStationEntry(e);
    if (!checked) {
        Failure f = checked.failure();
        for (const auto& b : kBoxes)
            if (f.field == b.box)
                f.detail = std::string("--") + b.option + " " + e.*b.member;
        return ctx.refuse(f);
    }
    ctx.out << log->add(checked.value()) << "\n";
    return kOk;
}

int runList(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return usage(ctx, "stationlog-list NAME");
    int code = kOk;
    auto log = openNamed(ctx, args.positional[0], code);
    if (!log)
        return code;
    ctx.out << "Nr\tDateTime";
    for (int f = 2; f < kQjFieldCount; ++f)
        ctx.out << "\t" << qjLogFields()[static_cast<std::size_t>(f)].Name;
    ctx.out << "\n";
    log->forEach(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
                 [&](const StationQso& q) {
                     ctx.out << q.nr << "\t" << q.dateTime.toStorage();
                     for (int f = 2; f < kQjFieldCount; ++f)
                         ctx.out << "\t" << *textField(q, f);
                     ctx.out << "\n";
                     return true;
                 });
    return kOk;
}

int runDelete(Context& ctx, const Args& args) {
    if (args.positional.size() != 1 || !args.get("nr"))
        return usage(ctx, "stationlog-delete NAME --nr N [--to M]");
    int code = kOk;
    auto log = openNamed(ctx, args.positional[0], code);
    if (!log)
        return code;
    const auto from = text::wholeNumber(*args.get("nr"));
    const auto to = text::wholeNumber(args.getOr("to", *args.get("nr")));
    if (!from || !to)
        return ctx.refuse(refuse(225, {}, "--nr/--to"));
    if (!args.get("to")) {
        // One record: the menu's delete of the marked entry.
        if (!log->remove(*from))
            return ctx.refuse(refuse(391, {}, "--nr " + std::to_string(*from)));
        ctx.out << "1\n";
        return kOk;
    }
    const auto removed = log->removeRange(*from, *to);
    if (!removed)
        return ctx.refuse(removed.failure());
    ctx.out << removed.value() << "\n";
    return kOk;
}

int runAdif(Context& ctx, const Args& args) {
    const std::string o = args.getOr("o", "");
    if (args.positional.size() != 1 || text::trim(o).empty() || args.has("from") != args.has("to"))
        return usage(ctx, "stationlog-adif NAME -o FILE [--from N --to M]");
    int code = kOk;
    auto log = openNamed(ctx, args.positional[0], code);
    if (!log)
        return code;
    std::optional<NrRange> range;
    if (args.has("from")) {
        auto r = checkExportRange(*log, args.getOr("from", ""), args.getOr("to", ""));
        if (!r) {
            Failure f = r.failure();
            f.detail = f.field == "Text14" ? "--to " + args.getOr("to", "")
                                           : "--from " + args.getOr("from", "");
            return ctx.refuse(f);
        }
        range = r.value();
    }
    const auto written = exportStationAdif(*log, o, range);
    ctx.out << savedMessage(ctx.texts, written) << "\n";
    return kOk;
}

const bool registeredNew = registerCommand(
    {"stationlog-new", "NAME", "create the station log QjLog/NAME.sqlite", {}, &runNew});
const bool registeredAdd = registerCommand(
    {"stationlog-add",
     "NAME --call C --date YYYY-MM-DD --time HH:MM --qrg F --mode M [--rst-tx R] [--rst-rx R] "
     "[--locator L] [--qrg-rx F] [--rxmode M] [--prop P] [--qsl Q] [--qsl-rx Q] [--manager C] "
     "[--name N] [--mycall C] [--mylocator L] [--power P] [--antenna A] [--note T]",
     "store a QSO in a station log after the checks of its window; prints its Nr",
     {},
     &runAdd});
const bool registeredList =
    registerCommand({"stationlog-list",
                     "NAME",
                     "every record of a station log in Nr order, tab-separated",
                     {},
                     &runList});
const bool registeredDelete =
    registerCommand({"stationlog-delete",
                     "NAME --nr N [--to M]",
                     "delete the record N, or every record from N to M; prints how many",
                     {},
                     &runDelete});
const bool registeredAdif =
    registerCommand({"stationlog-adif",
                     "NAME -o FILE [--from N --to M]",
                     "write the station log, or the records N to M, as an ADIF 2.2.3 file",
                     {},
                     &runAdif});

} // namespace
} // namespace orv::cli
