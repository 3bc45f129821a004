#include "core/util/file_io.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <random>
#include <sstream>
#include <unistd.h>

namespace orv::fileio {
namespace {

std::string errnoText(const std::string& what, const std::filesystem::path& p) {
    return what + " " + p.string() + ": " + std::strerror(errno);
}

std::filesystem::path tempBeside(const std::filesystem::path& path) {
    std::random_device rd;
    return path.parent_path() /
           ("." + path.filename().string() + ".tmp" + std::to_string(rd() % 1000000));
}

void syncDirectory(const std::filesystem::path& dir) {
    const int fd = ::open(dir.empty() ? "." : dir.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

} // namespace

std::string readAll(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw FileError(errnoText("cannot read", path));
    std::ostringstream ss;
    ss << in.rdbuf();
    if (in.bad())
        throw FileError(errnoText("cannot read", path));
    return ss.str();
}

void writeAtomic(const std::filesystem::path& path, const std::string& content) {
    const auto tmp = tempBeside(path);
    const int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        throw FileError(errnoText("cannot write", path));
    std::size_t done = 0;
    bool ok = true;
    int err = 0;
    while (done < content.size()) {
        const std::size_t chunk = content.size() - done;
        const ssize_t n = ::write(fd, content.data() + done, chunk);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            ok = false;
            err = errno;
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    if (ok && ::fsync(fd) != 0) {
        ok = false;
        err = errno;
    }
    if (::close(fd) != 0 && ok) {
        ok = false;
        err = errno;
    }
    if (ok && std::rename(tmp.c_str(), path.c_str()) != 0) {
        ok = false;
        err = errno;
    }
    if (!ok) {
        std::remove(tmp.c_str());
        errno = err;
        throw FileError(errnoText("cannot write", path));
    }
    syncDirectory(path.parent_path());
}

void writeAtomic(const std::filesystem::path& path,
                 const std::function<void(std::ostream&)>& writer) {
    std::ostringstream ss;
    writer(ss);
    writeAtomic(path, ss.str());
}

} // namespace orv::fileio
