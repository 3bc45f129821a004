#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

// The copy of a contest log to a second place while the contest runs. The
// copy is taken with SQLite's online backup API into a temporary file beside
// the destination and renamed over it when complete, so the destination is
// always a whole log the program can open, even while QSOs are written.
namespace orv {

// How one copy ended, with the text to show.
enum class BackupOutcome {
    Copied,
    NotReady,       // the destination's file system cannot be read: IText(33), stays on
    TooLittleSpace, // no more than twice the log's size free: IText(32), off in memory
    NoPath,         // the backup folder is gone: IText(35), off in the settings too
    CopyFailed,     // the copy itself failed: IText(35), the former copy stays as ".ALT"
};

struct BackupResult {
    BackupOutcome outcome = BackupOutcome::Copied;
    std::string detail; // the failure's own description, when there is one
    int text() const;   // the row of the language table to show; 0 after a copy
};

// Free bytes of the file system holding `folder`; nothing when it cannot be
// read. Replaceable in tests.
using FreeSpaceFn = std::function<std::optional<std::uintmax_t>(const std::filesystem::path&)>;
std::optional<std::uintmax_t> systemFreeSpace(const std::filesystem::path& folder);

// `BackupCopy`: copies the log `source` to `destination` (a full file name).
// A copy already there is kept as destination + ".ALT" until the new one is
// complete. Never changes `source`.
BackupResult BackupCopy(const std::filesystem::path& source,
                        const std::filesystem::path& destination,
                        const FreeSpaceFn& freeSpace = systemFreeSpace);

} // namespace orv
