#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/reference/country_list.h"
#include "core/submission/evaluation.h"
#include "core/submission/export_file.h"
#include "core/submission/log_printout.h"
#include "core/util/file_io.h"
#include "core/util/pdf_writer.h"
#include "core/util/text.h"

// print LOG --band BAND -o FILE.pdf: the printout of the evaluation window
// as a PDF, the same pages the window prints.
namespace orv::cli {
namespace {

int run(Context& ctx, const Args& args) {
    int code = kOk;
    auto arg = logArgument(ctx, args, true, code);
    if (!arg)
        return code;
    const std::string o = args.getOr("o", "");
    if (text::trim(o).empty()) {
        ctx.err << "missing -o FILE.pdf (see --help)\n";
        return kRefused;
    }
    // Countries are counted when the data folder has a country list.
    std::optional<CountryList> countries = CountryList::load(ctx.paths.countryDbPath());
    if (countries->empty())
        countries.reset();
    const Evaluation ev = evaluate(arg->opened.log, arg->band, countries ? &*countries : nullptr);
    try {
        fileio::writeAtomic(o, print::writePdf(layoutLogPrintout(ev, ctx.texts)));
    } catch (const fileio::FileError& e) {
        return ctx.fail(1168, kFailure, o + "\n" + e.what());
    }
    ctx.out << savedMessage(ctx.texts, o) << "\n";
    return kOk;
}

const bool registered = registerCommand({"print",
                                         "LOG --band BAND -o FILE.pdf",
                                         "write the band's log with its summary sheet as a PDF",
                                         {},
                                         &run});

} // namespace
} // namespace orv::cli
