#include "cli/docs/man_page.h"

#include "cli/docs/roff.h"
#include "cli/help.h"
#include "core/version.h"

namespace orv::cli {

void writeManPage(std::ostream& out) {
    using roff::escape;
    out << ".TH ORVANTA\\-TOOL 1 \"\" \"OrvantaContest " << kVersion << "\" \"User Commands\"\n"
        << ".SH NAME\n"
        << "orvanta\\-tool \\- the OrvantaContest log tool\n"
        << ".SH SYNOPSIS\n"
        << ".B orvanta\\-tool\n"
        << roff::usage("[--home DIR] COMMAND [ARGS]") << "\n"
        << ".SH DESCRIPTION\n"
        << escape("orvanta-tool works on the logs, the call database and the country list of "
                  "the OrvantaContest data folder without the window: for scripts, for a "
                  "second position and for checks. It keeps the rules of the program: a QSO "
                  "it adds is checked and scored as the entry row does.")
        << "\n.PP\n"
        << escape("Results go to standard output, messages to standard error, in the language "
                  "the program is set to.")
        << "\n.SH OPTIONS\n";
    for (const auto& o : globalOptions()) {
        out << ".TP\n"
            << roff::usage(o.option + (o.argument.empty() ? "" : " " + o.argument)) << "\n"
            << escape(o.text) << "\n";
    }
    out << ".SH COMMANDS\n";
    for (const auto& [name, c] : commands()) {
        out << ".TP\n"
            << "\\fB" << escape(name) << "\\fR" << (c.usage.empty() ? "" : " ")
            << roff::usage(c.usage) << "\n"
            << escape(c.summary) << "\n";
    }
    out << ".SH EXIT STATUS\n";
    for (const auto& e : exitStatuses())
        out << ".TP\n.B " << e.status << "\n" << escape(e.text) << "\n";
    out << ".SH ENVIRONMENT\n"
        << ".TP\n.B ORVANTA_HOME\n"
        << escape("the data folder when --home is not given") << "\n"
        << ".TP\n.B XDG_DATA_HOME\n"
        << escape("else the data folder is OrvantaContest in it (default "
                  "~/.local/share/OrvantaContest)")
        << "\n"
        << ".TP\n.B LC_ALL, LC_MESSAGES, LANG, LANGUAGE\n"
        << escape("on a data folder without a settings file, the language of the first start: "
                  "German the built-in texts, another language its file in Language/ (English "
                  "where none is shipped); the C locale keeps the built-in texts")
        << "\n"
        << ".SH FILES\n"
        << escape("In the data folder: the settings file OrvantaContest.INI, the contest logs "
                  "Logs/NAME.sqlite, the call database QBDat.sqlite, the country list "
                  "QBCountry.sqlite and the language files Language/*.lng.")
        << "\n"
        << ".SH SEE ALSO\n"
        << ".BR orvanta\\-contest (1)\n";
}

} // namespace orv::cli
