#include "core/backup/backup.h"

#include <sqlite3.h>

#include <system_error>

#include "core/util/sqlite.h"

namespace orv {
namespace fs = std::filesystem;
namespace {

fs::path withSuffix(const fs::path& p, const char* suffix) {
    return fs::path(p.string() + suffix);
}

// The whole database through the online backup API: a consistent picture of
// the log even while another connection commits QSOs into it.
void copyDatabase(const fs::path& source, const fs::path& target) {
    sql::Db from(source.string(), sql::Db::Mode::ReadOnly);
    sql::Db to(target.string(), sql::Db::Mode::ReadWriteCreate);
    sqlite3_backup* b = sqlite3_backup_init(to.handle(), "main", from.handle(), "main");
    if (!b)
        throw std::runtime_error(sqlite3_errmsg(to.handle()));
    int rc;
    // Busy and locked only mean a writer holds the log for a moment.
    while ((rc = sqlite3_backup_step(b, -1)) == SQLITE_BUSY || rc == SQLITE_LOCKED)
        sqlite3_sleep(5);
    sqlite3_backup_finish(b);
    if (rc != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errstr(rc));
    // A copy in rollback-journal mode is one self-contained file.
    to.exec("PRAGMA journal_mode = DELETE");
}

} // namespace

int BackupResult::text() const {
    switch (outcome) {
    case BackupOutcome::Copied:
        return 0;
    case BackupOutcome::NotReady:
        return 33;
    case BackupOutcome::TooLittleSpace:
        return 32;
    case BackupOutcome::NoPath:
    case BackupOutcome::CopyFailed:
        return 35;
    }
    return 35;
}

std::optional<std::uintmax_t> systemFreeSpace(const fs::path& folder) {
    std::error_code ec;
    const fs::space_info s = fs::space(folder, ec);
    if (ec)
        return std::nullopt;
    return s.available;
}

BackupResult BackupCopy(const fs::path& source, const fs::path& destination,
                        const FreeSpaceFn& freeSpace) {
    const fs::path folder = destination.parent_path();
    std::error_code ec;
    if (!fs::is_directory(folder, ec))
        return {BackupOutcome::NoPath, folder.string()};
    const auto free = freeSpace(folder);
    if (!free)
        return {BackupOutcome::NotReady, folder.string()};
    const std::uintmax_t size = fs::file_size(source, ec);
    if (ec)
        return {BackupOutcome::CopyFailed, ec.message()};
    // Room for the new copy beside the one kept as ".ALT".
    if (*free <= 2 * size)
        return {BackupOutcome::TooLittleSpace, folder.string()};

    const fs::path alt = withSuffix(destination, ".ALT");
    const fs::path part = withSuffix(destination, ".part");
    try {
        if (fs::exists(destination)) {
            fs::remove(alt);
            fs::rename(destination, alt);
        }
        fs::remove(part);
        copyDatabase(source, part);
        fs::rename(part, destination);
        fs::remove(alt);
    } catch (const std::exception& e) {
        fs::remove(part, ec);
        return {BackupOutcome::CopyFailed, e.what()};
    }
    return {};
}

} // namespace orv
