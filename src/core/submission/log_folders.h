#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/util/result.h"

// The log folders window `Form17` without its widgets: log files copied out
// of `Logs` and in, deleted, and new folders made. Logs are copied with
// SQLite's online backup API, so the copy of the open log is a whole log.
// Questions and messages go through Dialogs.
namespace orv {

class Dialogs;
class Texts;

namespace logfolders {

// The log files of a folder ("*.sqlite", names with their ending), sorted;
// `except` (the open log's file name) is left out. Nothing for a folder
// that cannot be read.
std::vector<std::string> listLogFiles(const std::filesystem::path& folder,
                                      const std::string& except = {});

// The name of a new folder: empty, "/", "\", ":", "<", ">", "?", "|", the
// double quote, "*", codes 1 to 31 and above 255 give IText(410).
Status checkFolderName(std::string_view name);
// `Command2`: the name check, IText(411) when the folder exists, IText(1172)
// with the system's reason when it cannot be made.
Result<std::filesystem::path> makeFolder(const std::filesystem::path& parent,
                                         std::string_view name);

// The copy-in test: the file is a log when its table `144MHz` has the
// fields `ErrQSO` and `OPCall`. Reads only.
bool isValidLog(const std::filesystem::path& file);

struct CopyRequest {
    std::vector<std::filesystem::path> files; // the selected logs
    std::filesystem::path target;             // folder the copies go to
    std::filesystem::path logsFolder;         // `Logs` of the data folder
    bool copyIn = false;                      // test each file with isValidLog
    std::filesystem::path openLog;            // never overwritten
};

struct CopyReport {
    std::vector<std::string> copied;
    bool cancelled = false;
};

// `Command1` and `Command7`: nothing at all when source and target are the
// same folder (out: target is `Logs`; in: the files lie in `Logs`). A
// target that cannot be written gives IText(1168) and copies nothing. An
// existing file is asked for with IText(8): No skips it, Cancel ends, Yes
// replaces it. `progress` gets IText(56) and the name before each copy.
CopyReport copyLogs(const CopyRequest& req, Dialogs& dialogs, const Texts& texts,
                    const std::function<void(const std::string&)>& progress = {});

// `Command4`: each file asked for with IText(55), Yes deletes it (with the
// journal files beside it); Cancel ends. The open log is never deleted.
std::vector<std::string> deleteLogs(const std::vector<std::filesystem::path>& files,
                                    const std::filesystem::path& openLog, Dialogs& dialogs,
                                    const Texts& texts);

} // namespace logfolders
} // namespace orv
