#include "core/submission/log_folders.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "core/backup/backup.h"
#include "core/i18n/texts.h"
#include "core/logstore/schema.h"
#include "core/util/ports.h"
#include "core/util/text.h"

namespace orv::logfolders {
namespace fs = std::filesystem;
namespace {

// Two folder names for the same place, as the file system sees them.
bool sameFolder(const fs::path& a, const fs::path& b) {
    std::error_code ec1, ec2;
    const fs::path ca = fs::weakly_canonical(a, ec1), cb = fs::weakly_canonical(b, ec2);
    if (!ec1 && !ec2 && ca == cb)
        return true;
    return text::upper((a / "").lexically_normal().string()) ==
           text::upper((b / "").lexically_normal().string());
}

bool sameFile(const fs::path& a, const fs::path& b) {
    std::error_code ec;
    return !b.empty() && fs::exists(a, ec) && fs::equivalent(a, b, ec);
}

// Whether a file can be made in the folder: the one honest test of a
// folder on a read-only medium or without the rights.
bool writable(const fs::path& folder) {
    std::error_code ec;
    if (!fs::is_directory(folder, ec))
        return false;
    const fs::path probe = folder / ".orvanta-write-test";
    {
        std::ofstream f(probe);
        if (!f)
            return false;
    }
    fs::remove(probe, ec);
    return true;
}

void removeWithJournal(const fs::path& file) {
    std::error_code ec;
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        fs::remove(fs::path(file.string() + suffix), ec);
    fs::remove(file);
}

} // namespace

std::vector<std::string> listLogFiles(const fs::path& folder, const std::string& except) {
    std::vector<std::string> out;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const fs::path& p = it->path();
        std::error_code fec;
        if (!it->is_regular_file(fec) || !text::iequals(p.extension().string(), ".sqlite"))
            continue;
        if (p.filename().string() != except)
            out.push_back(p.filename().string());
    }
    std::sort(out.begin(), out.end());
    return out;
}

Status checkFolderName(std::string_view name) {
    if (text::trim(name).empty())
        return refuse(410);
    const std::string decoded = text::isValidUtf8(name) ? std::string(name) : std::string();
    if (decoded.empty())
        return refuse(410);
    for (std::size_t i = 0; i < decoded.size();) {
        const unsigned char c = static_cast<unsigned char>(decoded[i]);
        // Code points above 255 start with a lead byte beyond U+00FF's.
        if (c >= 0xC4)
            return refuse(410);
        if (c < 0x80) {
            if (c < 32 || std::string_view("/\\:<>?|\"*").find(static_cast<char>(c)) !=
                              std::string_view::npos)
                return refuse(410);
            ++i;
        } else {
            i += c >= 0xE0 ? 3 : 2;
        }
    }
    return okStatus();
}

Result<fs::path> makeFolder(const fs::path& parent, std::string_view name) {
    if (const Status s = checkFolderName(name); !s)
        return s.failure();
    const fs::path folder = parent / std::string(name);
    std::error_code ec;
    if (fs::exists(folder, ec))
        return refuse(411, {}, folder.string());
    if (!fs::create_directory(folder, ec) || ec)
        return refuse(1172, {}, folder.string() + "\n" + ec.message());
    return folder;
}

bool isValidLog(const fs::path& file) {
    try {
        return FieldExists(file, "144MHz", "ErrQSO") && FieldExists(file, "144MHz", "OPCall");
    } catch (const std::exception&) {
        return false;
    }
}

CopyReport copyLogs(const CopyRequest& req, Dialogs& dialogs, const Texts& texts,
                    const std::function<void(const std::string&)>& progress) {
    CopyReport report;
    if (req.files.empty())
        return report;
    const fs::path source = req.files.front().parent_path();
    if (sameFolder(source, req.target) || (!req.copyIn && sameFolder(req.target, req.logsFolder)))
        return report;
    if (!writable(req.target)) {
        dialogs.inform(texts(1168) + "\n" + req.target.string(), Icon::Critical);
        return report;
    }
    for (const fs::path& file : req.files) {
        const std::string name = file.filename().string();
        if (req.copyIn && !isValidLog(file)) {
            dialogs.inform(texts(415) + "\n" + name, Icon::Critical);
            continue;
        }
        const fs::path dest = req.target / file.filename();
        std::error_code ec;
        if (fs::exists(dest, ec)) {
            if (sameFile(dest, req.openLog)) {
                dialogs.inform(texts(1174) + "\n" + name, Icon::Warning);
                continue;
            }
            const Answer a = dialogs.ask(texts(8) + "\n" + name, Buttons::YesNoCancel,
                                         Icon::Question, Answer::No);
            if (a == Answer::Cancel) {
                report.cancelled = true;
                break;
            }
            if (a != Answer::Yes)
                continue;
            try {
                removeWithJournal(dest);
            } catch (const fs::filesystem_error& e) {
                dialogs.inform(texts(1171) + "\n" + dest.string() + "\n" + e.what(),
                               Icon::Critical);
                continue;
            }
        }
        if (progress)
            progress(texts(56) + " " + name);
        const BackupResult r = BackupCopy(file, dest);
        if (r.outcome != BackupOutcome::Copied) {
            dialogs.inform(texts(r.text()) + "\n" + name + "\n" + r.detail, Icon::Critical);
            continue;
        }
        report.copied.push_back(name);
    }
    return report;
}

std::vector<std::string> deleteLogs(const std::vector<fs::path>& files, const fs::path& openLog,
                                    Dialogs& dialogs, const Texts& texts) {
    std::vector<std::string> deleted;
    for (const fs::path& file : files) {
        const std::string name = file.filename().string();
        if (sameFile(file, openLog))
            continue;
        const Answer a =
            dialogs.ask(texts(55) + "\n" + name, Buttons::YesNoCancel, Icon::Question, Answer::No);
        if (a == Answer::Cancel)
            break;
        if (a != Answer::Yes)
            continue;
        try {
            removeWithJournal(file);
            deleted.push_back(name);
        } catch (const fs::filesystem_error& e) {
            dialogs.inform(texts(1171) + "\n" + name + "\n" + e.what(), Icon::Critical);
        }
    }
    return deleted;
}

} // namespace orv::logfolders
