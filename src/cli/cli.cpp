#include "cli/cli.h"

#include <cctype>
#include <exception>
#include <filesystem>

#include "cli/help.h"
#include "cli/share_link.h"
#include "core/i18n/environment_language.h"
#include "core/i18n/language.h"
#include "core/version.h"

namespace orv::cli {

std::optional<std::string> Args::get(const std::string& name) const {
    auto it = options.find(name);
    if (it == options.end())
        return std::nullopt;
    return it->second;
}

std::string Args::getOr(const std::string& name, const std::string& fallback) const {
    auto v = get(name);
    return v ? *v : fallback;
}

int Context::refuse(const Failure& f) {
    std::string msg = texts(f.text);
    if (!f.detail.empty())
        msg += msg.empty() ? f.detail : "\n" + f.detail;
    err << msg << "\n";
    return kRefused;
}

int Context::fail(int textRow, int code, const std::string& detail) {
    std::string msg = texts(textRow);
    if (!detail.empty())
        msg += msg.empty() ? detail : "\n" + detail;
    err << msg << "\n";
    return code;
}

int Context::usage(const std::string& syntax) {
    err << texts(603) << ": orvanta-tool " << syntax << "\n";
    return kRefused;
}

int Context::missing(const std::string& what) {
    err << texts(604) << ": " << what << " (" << texts(605) << ")\n";
    return kRefused;
}

namespace {

std::map<std::string, Command>& registry() {
    static std::map<std::string, Command> r;
    return r;
}

// The table for a mistake in the command line, in the language the data
// folder is set to; read only, so that nothing is made for a wrong call.
Texts commandLineTexts(const std::optional<std::string>& home) {
    Texts texts;
    try {
        const AppPaths paths{resolveDataFolder(home)};
        if (IniFile{paths.iniPath()}.exists())
            loadChosenLanguage(texts, Settings{IniFile{paths.iniPath()}}, paths.languagePath());
    } catch (const std::exception&) {
        // No data folder to be found: the built-in texts.
    }
    return texts;
}

} // namespace

bool registerCommand(Command command) {
    registry()[command.name] = std::move(command);
    return true;
}

const std::map<std::string, Command>& commands() {
    return registry();
}

int runTool(const std::vector<std::string>& argv, Clock& clock, std::ostream& out,
            std::ostream& err) {
    std::optional<std::string> home;
    std::size_t i = 1;
    for (; i < argv.size(); ++i) {
        const auto& a = argv[i];
        if (a == "--help" || a == "-h") {
            printHelp(out);
            return kOk;
        }
        if (a == "--version") {
            out << "orvanta-tool " << kVersion << "\n";
            return kOk;
        }
        if (a == "--home") {
            if (i + 1 >= argv.size()) {
                err << "--home: " << Texts{}(602) << "\n";
                return kRefused;
            }
            home = argv[++i];
            continue;
        }
        break;
    }
    if (i >= argv.size()) {
        printHelp(err);
        return kRefused;
    }
    const auto it = registry().find(argv[i]);
    if (it == registry().end()) {
        const Texts texts = commandLineTexts(home);
        err << texts(600) << ": " << argv[i] << " (" << texts(605) << ")\n";
        return kRefused;
    }
    const Command& cmd = it->second;
    Args args;
    for (++i; i < argv.size(); ++i) {
        const auto& a = argv[i];
        if (a == "--help") {
            out << "orvanta-tool " << cmd.name << " " << cmd.usage << "\n" << cmd.summary << "\n";
            return kOk;
        }
        if (a == "--home" && i + 1 < argv.size()) {
            home = argv[++i];
            continue;
        }
        const bool longOpt = a.size() > 2 && a.rfind("--", 0) == 0;
        const bool shortOpt = a.size() == 2 && a[0] == '-' && a[1] != '-' && !std::isdigit(a[1]);
        if (!longOpt && !shortOpt) {
            args.positional.push_back(a);
            continue;
        }
        const std::string name = a.substr(longOpt ? 2 : 1);
        if (cmd.flagOptions.count(name)) {
            args.flags.insert(name);
            continue;
        }
        if (i + 1 >= argv.size()) {
            err << a << ": " << commandLineTexts(home)(601) << "\n";
            return kRefused;
        }
        args.options[name] = argv[++i];
    }
    Texts texts;
    try {
        Context ctx{prepareDataFolder(resolveDataFolder(home)), Texts{}, clock, out, err};
        // The tool speaks the language the program is set to, and on a first
        // start the desktop's.
        Settings settings{IniFile{ctx.paths.iniPath()}};
        adoptEnvironmentLanguage(settings, ctx.paths.languagePath(), localeEnvironment(systemEnv));
        if (auto problem =
                languageProblem(loadChosenLanguage(ctx.texts, settings, ctx.paths.languagePath())))
            ctx.refuse(*problem);
        texts = ctx.texts;
        const int code = cmd.run(ctx, args);
        sendQueuedChanges(ctx);
        return code;
    } catch (const std::exception& e) {
        err << texts(10) << ": " << e.what() << "\n";
        return kFailure;
    }
}

} // namespace orv::cli
