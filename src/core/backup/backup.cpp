#include "core/backup/backup.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "core/util/sqlite.h"

namespace orv {
namespace fs = std::filesystem;
namespace {

fs::path withSuffix(const fs::path& p, const char* suffix) {
    return fs::path(p.string() + suffix);
}

// Puts the copy on the disk before it is renamed into place, in slices: a
// commit's own sync then never queues behind the whole copy at once, which is
// what made commits slow while a backup ran.
void flushToDisk(const fs::path& file) {
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw std::runtime_error(file.string() + ": " + std::strerror(errno));
#ifdef __linux__
    constexpr off_t kSlice = 512 * 1024;
    const off_t size = ::lseek(fd, 0, SEEK_END);
    for (off_t at = 0; at < size; at += kSlice)
        ::sync_file_range(fd, at, kSlice,
                          SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                              SYNC_FILE_RANGE_WAIT_AFTER);
#endif
    const int rc = ::fdatasync(fd);
    const int err = errno;
    ::close(fd);
    if (rc != 0)
        throw std::runtime_error(file.string() + ": " + std::strerror(err));
}

// The whole database through the online backup API: a consistent picture of
// the log even while another connection commits QSOs into it. The copy is
// written without journal or syncs of its own; flushToDisk makes it durable
// once, before the rename.
void copyDatabase(const fs::path& source, const fs::path& target) {
    {
        sql::Db from(source.string(), sql::Db::Mode::ReadOnly);
        sql::Db to(target.string(), sql::Db::Mode::ReadWriteCreate);
        to.exec("PRAGMA synchronous = OFF");
        to.exec("PRAGMA journal_mode = OFF");
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
    flushToDisk(target);
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
