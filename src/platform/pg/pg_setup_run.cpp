#include "platform/pg/pg_setup_run.h"

#include <fcntl.h>
#include <poll.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "core/util/file_io.h"

namespace orv {

namespace {

std::string userName(uid_t uid) {
    const passwd* p = getpwuid(uid);
    return p ? p->pw_name : "";
}

void closeFd(int& fd) {
    if (fd >= 0)
        close(fd);
    fd = -1;
}

// Feeds `input` to the child and collects what it writes until it closes
// its output; closes both ends.
std::string exchange(int in, int out, const std::string& input) {
    std::string output;
    std::size_t sent = 0;
    if (input.empty())
        closeFd(in);
    char buf[4096];
    while (out >= 0) {
        pollfd fds[2] = {{out, POLLIN, 0}, {in, POLLOUT, 0}};
        if (poll(fds, in >= 0 ? 2 : 1, -1) < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        if (in >= 0 && (fds[1].revents & (POLLOUT | POLLERR | POLLHUP))) {
            const ssize_t n = write(in, input.data() + sent, input.size() - sent);
            if (n > 0)
                sent += static_cast<std::size_t>(n);
            if (n < 0 && errno != EINTR && errno != EAGAIN)
                sent = input.size(); // the child stopped reading
            if (sent == input.size())
                closeFd(in);
        }
        if (fds[0].revents & (POLLIN | POLLHUP | POLLERR)) {
            const ssize_t n = read(out, buf, sizeof buf);
            if (n > 0)
                output.append(buf, static_cast<std::size_t>(n));
            else if (n == 0 || errno != EINTR)
                closeFd(out);
        }
    }
    closeFd(in);
    closeFd(out);
    return output;
}

} // namespace

CommandRun runCommand(const std::vector<std::string>& argv, const std::string& asUser,
                      const std::string& input) {
    std::vector<std::string> full;
    if (!asUser.empty() && geteuid() == 0 && asUser != userName(0))
        full = {"runuser", "-u", asUser, "--"};
    full.insert(full.end(), argv.begin(), argv.end());
    std::vector<char*> args;
    for (auto& a : full)
        args.push_back(a.data());
    args.push_back(nullptr);

    int inPipe[2], outPipe[2];
    if (pipe2(inPipe, O_CLOEXEC) != 0)
        return {};
    if (pipe2(outPipe, O_CLOEXEC) != 0) {
        closeFd(inPipe[0]);
        closeFd(inPipe[1]);
        return {};
    }
    // A child that stops reading must not end us with SIGPIPE.
    struct sigaction ignore {
    }, before{};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &before);
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(inPipe[0], STDIN_FILENO);
        dup2(outPipe[1], STDOUT_FILENO);
        dup2(outPipe[1], STDERR_FILENO);
        if (chdir("/") != 0)
            _exit(127);
        signal(SIGPIPE, SIG_DFL);
        execvp(args[0], args.data());
        _exit(127);
    }
    CommandRun r;
    closeFd(inPipe[0]);
    closeFd(outPipe[1]);
    if (pid < 0) {
        closeFd(inPipe[1]);
        closeFd(outPipe[0]);
    } else {
        // Never blocked writing while the child waits for us to read.
        fcntl(inPipe[1], F_SETFL, O_NONBLOCK);
        r.output = exchange(inPipe[1], outPipe[0], input);
        int status = 0;
        while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    sigaction(SIGPIPE, &before, nullptr);
    return r;
}

std::string ownerName(const std::filesystem::path& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0)
        return "";
    return userName(st.st_uid);
}

bool mayDriveServerOf(const std::string& owner) {
    return geteuid() == 0 || (!owner.empty() && owner == userName(geteuid()));
}

void rewriteConfigFile(const std::filesystem::path& path, const std::string& text) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0)
        throw fileio::FileError("cannot read " + path.string());
    fileio::writeAtomic(path, text);
    if ((geteuid() == 0 && chown(path.c_str(), st.st_uid, st.st_gid) != 0) ||
        chmod(path.c_str(), st.st_mode & 07777) != 0)
        throw fileio::FileError("cannot keep the owner of " + path.string());
}

} // namespace orv
