#include "core/logstore/system_time.h"

#include <cerrno>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "core/util/text.h"

namespace orv {
namespace {

// Reads whole numbers separated by `sep`; nothing unless there are `min` to
// `max` of them and nothing else.
std::optional<std::vector<int>> numbers(std::string_view s, char sep, std::size_t min,
                                        std::size_t max) {
    std::vector<int> out;
    std::size_t from = 0;
    while (true) {
        const std::size_t to = std::min(s.find(sep, from), s.size());
        const std::string_view part = s.substr(from, to - from);
        if (part.empty() || part.size() > 4)
            return std::nullopt;
        int v = 0;
        for (const char c : part) {
            if (c < '0' || c > '9')
                return std::nullopt;
            v = v * 10 + (c - '0');
        }
        out.push_back(v);
        if (to == s.size())
            break;
        from = to + 1;
    }
    if (out.size() < min || out.size() > max)
        return std::nullopt;
    return out;
}

} // namespace

std::optional<DateTime> parseTypedTime(std::string_view typed) {
    const std::string s = text::trim(typed);
    const auto n = numbers(s, ':', 2, 3);
    if (!n || (*n)[0] > 23 || (*n)[1] > 59 || (n->size() == 3 && (*n)[2] > 59))
        return std::nullopt;
    DateTime t;
    t.hour = (*n)[0];
    t.minute = (*n)[1];
    t.second = n->size() == 3 ? (*n)[2] : 0;
    return t;
}

std::optional<DateTime> parseTypedDate(std::string_view typed) {
    const std::string s = text::trim(typed);
    int y = 0, m = 0, d = 0;
    if (auto iso = numbers(s, '-', 3, 3)) {
        y = (*iso)[0], m = (*iso)[1], d = (*iso)[2];
        if (s.find('-') != 4)
            return std::nullopt;
    } else if (auto de = numbers(s, '.', 3, 3)) {
        d = (*de)[0], m = (*de)[1], y = (*de)[2];
        const std::size_t yearDigits = s.size() - s.rfind('.') - 1;
        if (yearDigits == 2)
            y += 2000;
        else if (yearDigits != 4)
            return std::nullopt;
    } else {
        return std::nullopt;
    }
    if (!DateTime::validDate(y, m, d))
        return std::nullopt;
    return DateTime{y, m, d, 0, 0, 0};
}

Status setComputerClock(SystemTimeSetter& setter, const Clock& clock, ClockPart part,
                        std::string_view typed) {
    DateTime t = clock.now();
    if (part == ClockPart::Time) {
        const auto v = parseTypedTime(typed);
        if (!v)
            return refuse(14, "Text5");
        t.hour = v->hour, t.minute = v->minute, t.second = v->second;
    } else {
        const auto v = parseTypedDate(typed);
        if (!v)
            return refuse(13, "Text5");
        t.year = v->year, t.month = v->month, t.day = v->day;
    }
    return setter.setSystemTime(t);
}

Status TimedatectlSetter::setSystemTime(const DateTime& localTime) {
    int fds[2];
    if (::pipe(fds) != 0)
        return refuse(0, {}, std::string("pipe: ") + std::strerror(errno));
    const std::string when = localTime.toStorage();
    std::vector<char*> argv{program_.data(), const_cast<char*>("set-time"),
                            const_cast<char*>(when.c_str()), nullptr};
    const std::string execFailed = program_ + ": ";
    const pid_t pid = ::fork();
    if (pid < 0) {
        const int err = errno;
        ::close(fds[0]);
        ::close(fds[1]);
        return refuse(0, {}, std::string("fork: ") + std::strerror(err));
    }
    if (pid == 0) {
        ::dup2(fds[1], STDOUT_FILENO);
        ::dup2(fds[1], STDERR_FILENO);
        ::close(fds[0]);
        ::close(fds[1]);
        ::execvp(argv[0], argv.data());
        // Only plain writes here: the parent may have other threads.
        const char* why = std::strerror(errno);
        [[maybe_unused]] auto w = ::write(STDERR_FILENO, execFailed.data(), execFailed.size());
        w = ::write(STDERR_FILENO, why, std::strlen(why));
        ::_exit(127);
    }
    ::close(fds[1]);
    std::string output;
    char buf[512];
    for (ssize_t n; (n = ::read(fds[0], buf, sizeof buf)) != 0;) {
        if (n < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        output.append(buf, static_cast<std::size_t>(n));
    }
    ::close(fds[0]);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return okStatus();
    std::string msg = text::trim(output);
    if (msg.empty())
        msg = program_ + " set-time failed (status " +
              std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1) + ")";
    return refuse(0, {}, msg);
}

} // namespace orv
