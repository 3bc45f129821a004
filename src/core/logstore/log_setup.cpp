#include "core/logstore/log_setup.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <system_error>

#include "core/locator/locator.h"
#include "core/settings/settings.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr std::string_view kLogEnding = ".sqlite";
// The longest file name (in bytes) that Linux file systems hold.
constexpr std::size_t kMaxFileNameBytes = 255;

// Code points of a UTF-8 text; nothing when it is not valid UTF-8.
std::optional<std::vector<std::uint32_t>> codePoints(std::string_view s) {
    if (!text::isValidUtf8(s))
        return std::nullopt;
    std::vector<std::uint32_t> out;
    for (std::size_t i = 0; i < s.size();) {
        const auto c = static_cast<unsigned char>(s[i]);
        int extra = c < 0x80 ? 0 : c < 0xE0 ? 1 : c < 0xF0 ? 2 : 3;
        std::uint32_t cp = extra == 0 ? c : c & (0x3F >> extra);
        for (int k = 1; k <= extra; ++k)
            cp =
                (cp << 6) | (static_cast<unsigned char>(s[i + static_cast<std::size_t>(k)]) & 0x3F);
        out.push_back(cp);
        i += static_cast<std::size_t>(extra) + 1;
    }
    return out;
}

} // namespace

Status Testen(const NewLogForm& form) {
    if (text::length(form.contest) < 1)
        return refuse(28, "Combo4");
    if (text::length(text::trim(form.myCall)) < 3)
        return refuse(1, "Text1");
    const std::string loc = text::trim(form.myLocator);
    if (text::length(loc) < 6)
        return refuse(2, "Text2");
    // The field takes upper case as typed; a position needs a legal locator.
    if (!LocOK(text::upper(loc)))
        return refuse(2, "Text2");
    if (form.startBand.empty())
        return refuse(15, "Combo1");
    if (form.startMode.empty())
        return refuse(16, "Combo3");
    return okStatus();
}

Status checkLogName(std::string_view name) {
    const auto cps = codePoints(name);
    if (!cps || cps->empty() || cps->size() > 250)
        return refuse(7);
    constexpr std::string_view forbidden = "/\\:<>?|\"*";
    for (const std::uint32_t cp : *cps)
        if (cp < 32 || cp > 255 || forbidden.find(static_cast<char>(cp)) != std::string_view::npos)
            return refuse(7);
    if (name.size() + kLogEnding.size() > kMaxFileNameBytes)
        return refuse(7, {}, "the file system holds names of at most 248 bytes");
    return okStatus();
}

std::string proposedLogName(const DateTime& today) {
    return today.yyyymmdd();
}

std::vector<std::string> listLogs(const std::filesystem::path& logsFolder) {
    std::vector<std::string> names;
    std::error_code ec;
    for (std::filesystem::directory_iterator it(logsFolder, ec), end; !ec && it != end;
         it.increment(ec)) {
        const auto& p = it->path();
        if (it->is_regular_file(ec) && text::iequals(p.extension().string(), kLogEnding) &&
            !p.stem().empty())
            names.push_back(p.stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> timeOffsetList() {
    std::vector<std::string> list;
    for (int n = 12; n >= 1; --n)
        list.push_back("-" + std::to_string(n) + ":00h");
    list.push_back("00:00h");
    for (int n = 1; n <= 12; ++n)
        list.push_back("+" + std::to_string(n) + ":00h");
    return list;
}

int parseTimeOffset(std::string_view entry) {
    return static_cast<int>(text::leadingInt(entry.substr(0, entry.find(':'))));
}

int timeOffsetIndex(int hours) {
    return std::clamp(hours, -12, 12) + 12;
}

Result<ContestLog> createNewLog(const std::filesystem::path& logsFolder, std::string_view name,
                                const NewLogForm& form, const ContestData& contest,
                                bool overwrite) {
    if (auto t = Testen(form); !t)
        return t.failure();
    if (auto n = checkLogName(name); !n)
        return n.failure();
    const auto path = logsFolder / (std::string(name) + std::string(kLogEnding));
    if (std::filesystem::exists(path)) {
        if (!overwrite)
            return refuse(8);
        removeLogFile(path);
    }
    std::filesystem::create_directories(logsFolder);
    NewLogData data;
    data.myCall = text::upper(text::trim(form.myCall));
    data.myLocator = text::upper(text::trim(form.myLocator));
    data.contName = contest.ContestName;
    data.zaehl = contest.Zaehl;
    return ContestLog::create(path, data);
}

Result<OpenedLog> openLog(const std::filesystem::path& logFile) {
    auto opened = ContestLog::open(logFile);
    if (!opened)
        return opened.failure();
    ContestLog log = std::move(opened).value();
    const MyDataRow d = log.myData();
    OpenedLog out{std::move(log), d.myCall, d.myLocator, ConDatLoadDB(d), {}};
    out.bandsWithQsos = out.log.bandsWithQsos();
    return out;
}

void saveLogChoice(Settings& settings, const LogChoice& choice) {
    settings.set(keys::ZeitPlusMinus, choice.zeitPlusMinus);
    settings.set(keys::MyCall, text::upper(text::trim(choice.myCall)));
    settings.set(keys::MyLocator, text::upper(text::trim(choice.myLocator)));
    settings.set(keys::Mode, choice.modeIndex);
    settings.rememberCall(choice.myCall);
    SaveAConDat(settings.file(), choice.contest);
}

} // namespace orv
