#include <string>

#include "cli/cli.h"
#include "core/i18n/language.h"
#include "core/util/file_io.h"
#include "core/util/text.h"

// language [NAME]: the language menu. Without NAME it lists "<Default>" and the
// language files, the one in use marked with "*"; with NAME it chooses that
// language as the menu does.
// language-template: writes Language/neu.lng, the template for a translation.
namespace orv::cli {
namespace {

Settings settingsOf(const Context& ctx) {
    return Settings{IniFile{ctx.paths.iniPath()}};
}

void listTo(Context& ctx, std::ostream& out) {
    const std::string current = settingsOf(ctx).get(keys::Language);
    const bool isDefault = current.empty() || current == kDefaultLanguage;
    out << (isDefault ? "* " : "  ") << kDefaultLanguage << "\n";
    for (const auto& name : languageFiles(ctx.paths.languagePath()))
        out << (!isDefault && name == current ? "* " : "  ") << name << "\n";
}

int list(Context& ctx) {
    listTo(ctx, ctx.out);
    return kOk;
}

// The file a name means: as given, or with ".lng" added ("English").
std::optional<std::filesystem::path> fileNamed(const std::filesystem::path& dir,
                                               const std::string& name) {
    if (auto file = findLanguageFile(dir, name))
        return file;
    if (!text::endsWith(text::lower(name), ".lng"))
        return findLanguageFile(dir, name + ".lng");
    return std::nullopt;
}

int choose(Context& ctx, std::string name) {
    const auto dir = ctx.paths.languagePath();
    if (name != kDefaultLanguage) {
        // The menu offers only files that are there; here a bad name or a bad
        // file is refused before the choice is stored.
        const auto file = fileNamed(dir, name);
        if (!file) {
            ctx.err << ctx.texts(608) << "\n";
            listTo(ctx, ctx.err);
            return kRefused;
        }
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
    if (args.positional.size() > 1)
        return ctx.usage("language [NAME]");
    return args.positional.empty() ? list(ctx) : choose(ctx, args.positional[0]);
}

int runTemplate(Context& ctx, const Args& args) {
    if (!args.positional.empty())
        return ctx.usage("language-template");
    const auto path = ctx.paths.languagePath() / "neu.lng";
    fileio::writeAtomic(path, ctx.texts.languageTemplate());
    ctx.out << ctx.texts(183) << "\n" << path.string() << "\n";
    return kOk;
}

const bool registeredLanguage = registerCommand(
    {"language",
     "[NAME]",
     "list the languages (the one in use marked *), or choose NAME (a file of Language/, "
     "with or without .lng, or <Default>)",
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
