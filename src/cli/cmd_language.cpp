#include <string>

#include "cli/cli.h"
#include "core/i18n/language.h"
#include "core/util/file_io.h"

// language [NAME]: the language menu. Without NAME it lists "<Default>" and the
// language files, the one in use marked with "*"; with NAME it chooses that
// language as the menu does.
// language-template: writes Language/neu.lng, the template for a translation.
namespace orv::cli {
namespace {

Settings settingsOf(const Context& ctx) {
    return Settings{IniFile{ctx.paths.iniPath()}};
}

int list(Context& ctx) {
    const std::string current = settingsOf(ctx).get(keys::Language);
    const bool isDefault = current.empty() || current == kDefaultLanguage;
    ctx.out << (isDefault ? "* " : "  ") << kDefaultLanguage << "\n";
    for (const auto& name : languageFiles(ctx.paths.languagePath()))
        ctx.out << (!isDefault && name == current ? "* " : "  ") << name << "\n";
    return kOk;
}

int choose(Context& ctx, std::string name) {
    const auto dir = ctx.paths.languagePath();
    if (name != kDefaultLanguage) {
        // The menu offers only files that are there; here a bad name or a bad
        // file is refused before the choice is stored.
        const auto file = findLanguageFile(dir, name);
        if (!file)
            return ctx.refuse(refuse(230, {}, name));
        Texts probe = ctx.texts;
        if (probe.loadLanguageFile(*file).status == Texts::LoadStatus::Invalid)
            return ctx.refuse(refuse(230, {}, file->string()));
        // Stored as the file is spelled, so that the menu finds its entry.
        name = file->filename().string();
    }
    Settings settings = settingsOf(ctx);
    const auto result = chooseLanguage(ctx.texts, settings, dir, name);
    if (auto problem = languageProblem(result))
        ctx.refuse(*problem); // rows before the bad one are in use: a warning only
    ctx.out << ctx.texts(231) << ": " << name << "\n";
    return kOk;
}

int runLanguage(Context& ctx, const Args& args) {
    if (args.positional.size() > 1) {
        ctx.err << "usage: orvanta-tool language [NAME]\n";
        return kRefused;
    }
    return args.positional.empty() ? list(ctx) : choose(ctx, args.positional[0]);
}

int runTemplate(Context& ctx, const Args& args) {
    if (!args.positional.empty()) {
        ctx.err << "usage: orvanta-tool language-template\n";
        return kRefused;
    }
    const auto path = ctx.paths.languagePath() / "neu.lng";
    fileio::writeAtomic(path, ctx.texts.languageTemplate());
    ctx.out << ctx.texts(183) << "\n" << path.string() << "\n";
    return kOk;
}

const bool registeredLanguage = registerCommand(
    {"language",
     "[NAME]",
     "list the languages (the one in use marked *), or choose NAME (a file of Language/, or "
     "<Default>)",
     {},
     &runLanguage});
const bool registeredTemplate =
    registerCommand({"language-template",
                     "",
                     "write Language/neu.lng, a template of every text in the language in use",
                     {},
                     &runTemplate});

} // namespace
} // namespace orv::cli
