#include "core/app/app_paths.h"

#include <cstdlib>

#include "core/i18n/bundled_languages.h"
#include "core/util/text.h"

namespace orv {
namespace fs = std::filesystem;

std::optional<std::string> systemEnv(const char* name) {
    const char* v = std::getenv(name);
    if (!v || !*v)
        return std::nullopt;
    return std::string(v);
}

fs::path resolveDataFolder(const std::optional<std::string>& home, const EnvLookup& env) {
    if (home && !home->empty())
        return fs::absolute(*home);
    if (auto v = env("ORVANTA_HOME"))
        return fs::absolute(*v);
    if (auto v = env("XDG_DATA_HOME"))
        return fs::path(*v) / "OrvantaContest";
    const auto h = env("HOME");
    return fs::path(h ? *h : ".") / ".local" / "share" / "OrvantaContest";
}

std::optional<fs::path> findCaseBlind(const fs::path& dir, const std::string& name) {
    std::error_code ec;
    if (fs::exists(dir / name, ec))
        return dir / name;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec))
        if (text::iequals(it->path().filename().string(), name))
            return it->path();
    return std::nullopt;
}

namespace {
void restoreFromOrg(const fs::path& dir, const std::string& name) {
    if (findCaseBlind(dir, name))
        return;
    if (auto org = findCaseBlind(dir, name + "_org"))
        fs::copy_file(*org, dir / name);
}
} // namespace

AppPaths prepareDataFolder(const fs::path& folder, const std::optional<fs::path>& shipped) {
    AppPaths p{folder};
    fs::create_directories(folder);
    restoreFromOrg(folder, p.iniPath().filename().string());
    restoreFromOrg(folder, p.callDbPath().filename().string());
    for (const auto& sub : {p.logsPath(), p.audioPath(), p.languagePath()})
        fs::create_directories(sub);
    std::optional<fs::path> shippedLanguages;
    if (shipped)
        shippedLanguages = *shipped / "Language";
    installBundledLanguages(p.languagePath(), shippedLanguages);
    return p;
}

} // namespace orv
