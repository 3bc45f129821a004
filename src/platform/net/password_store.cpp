#include "platform/net/password_store.h"

#include <libsecret/secret.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

#include "core/util/file_io.h"

namespace orv {
namespace {

const SecretSchema* schema() {
    static const SecretSchema s = {"org.orvanta.Contest.Upload",
                                   SECRET_SCHEMA_NONE,
                                   {{"host", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                    {"user", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                    {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                                   0,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr};
    return &s;
}

// The file: one line per account, "user@host", a tab, the password.
using Entries = std::map<std::string, std::string>;

std::string key(const std::string& host, const std::string& user) {
    return user + "@" + host;
}

Entries readEntries(const std::filesystem::path& file) {
    Entries e;
    std::string content;
    try {
        content = fileio::readAll(file);
    } catch (const fileio::FileError&) {
        return e;
    }
    std::size_t pos = 0;
    while (pos < content.size()) {
        std::size_t end = content.find('\n', pos);
        if (end == std::string::npos)
            end = content.size();
        const std::string line = content.substr(pos, end - pos);
        if (const auto tab = line.find('\t'); tab != std::string::npos)
            e[line.substr(0, tab)] = line.substr(tab + 1);
        pos = end + 1;
    }
    return e;
}

// Written beside the file with mode 0600 from the start and renamed over it,
// so the password is never readable by others, not even for a moment.
void writeEntries(const std::filesystem::path& file, const Entries& e) {
    std::string content;
    for (const auto& [k, v] : e)
        content += k + "\t" + v + "\n";
    const std::filesystem::path tmp = file.string() + ".tmp";
    const int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0)
        throw fileio::FileError("cannot write " + file.string() + ": " + std::strerror(errno));
    ::fchmod(fd, 0600);
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t n = ::write(fd, content.data() + done, content.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            const int err = errno;
            ::close(fd);
            ::unlink(tmp.c_str());
            throw fileio::FileError("cannot write " + file.string() + ": " + std::strerror(err));
        }
        done += static_cast<std::size_t>(n);
    }
    const bool synced = ::fsync(fd) == 0;
    ::close(fd);
    if (!synced || ::rename(tmp.c_str(), file.c_str()) != 0) {
        const int err = errno;
        ::unlink(tmp.c_str());
        throw fileio::FileError("cannot write " + file.string() + ": " + std::strerror(err));
    }
}

bool clean(const std::string& s) {
    return s.find_first_of("\t\r\n") == std::string::npos;
}

} // namespace

std::optional<std::string> PasswordStore::load(const std::string& host,
                                               const std::string& user) const {
    if (useKeyring_) {
        GError* error = nullptr;
        gchar* found = secret_password_lookup_sync(schema(), nullptr, &error, "host", host.c_str(),
                                                   "user", user.c_str(), nullptr);
        if (error)
            g_error_free(error);
        if (found) {
            std::string p = found;
            secret_password_free(found);
            return p;
        }
    }
    const Entries e = readEntries(file_);
    if (const auto it = e.find(key(host, user)); it != e.end())
        return it->second;
    return std::nullopt;
}

PasswordStore::Place PasswordStore::save(const std::string& host, const std::string& user,
                                         const std::string& password) {
    if (useKeyring_) {
        GError* error = nullptr;
        const std::string label = "OrvantaContest upload " + key(host, user);
        const gboolean stored = secret_password_store_sync(
            schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), password.c_str(), nullptr, &error,
            "host", host.c_str(), "user", user.c_str(), nullptr);
        if (error)
            g_error_free(error);
        if (stored) {
            // A copy in the file from a time without keyring is not kept.
            Entries e = readEntries(file_);
            if (e.erase(key(host, user)))
                writeEntries(file_, e);
            return Place::Keyring;
        }
    }
    if (!clean(host) || !clean(user) || !clean(password))
        throw fileio::FileError("cannot write " + file_.string() + ": line break or tab in entry");
    Entries e = readEntries(file_);
    e[key(host, user)] = password;
    writeEntries(file_, e);
    return Place::File;
}

void PasswordStore::forget(const std::string& host, const std::string& user) {
    if (useKeyring_) {
        GError* error = nullptr;
        secret_password_clear_sync(schema(), nullptr, &error, "host", host.c_str(), "user",
                                   user.c_str(), nullptr);
        if (error)
            g_error_free(error);
    }
    Entries e = readEntries(file_);
    if (e.erase(key(host, user)))
        writeEntries(file_, e);
}

} // namespace orv
