#pragma once

#include <string>
#include <sys/types.h>

namespace orv::test {

// A Hamlib daemon (`rotctld` or `rigctld`) with its dummy device (model 1),
// started on a free port of 127.0.0.1 and ended with the object. It can be
// killed and started again on the same port, as a device that goes away.
class HamlibDaemon {
public:
    // program: "rotctld" or "rigctld".
    explicit HamlibDaemon(std::string program);
    ~HamlibDaemon();
    HamlibDaemon(const HamlibDaemon&) = delete;
    HamlibDaemon& operator=(const HamlibDaemon&) = delete;

    int port() const { return port_; }
    std::string hostPort() const { return "127.0.0.1:" + std::to_string(port_); }
    // Starts the daemon and waits until it accepts connections.
    void start();
    void kill();
    // Stops the daemon without ending it (SIGSTOP), as a device that no
    // longer answers: connections hang until the client's timeout. `false`
    // lets it run on.
    void freeze(bool on);
    // One command of the daemon's protocol ("F 432200000", "p"); returns
    // its answer lines.
    std::string command(const std::string& line) const;
    // The first line of a command's answer as a number ("p" gives the
    // azimuth). The daemon answers another client's error now and then while
    // the program under test holds the device too; such an answer is asked
    // again, and after a second of them the result is NaN, which fails
    // every comparison.
    double number(const std::string& line) const;

private:
    void openOnce() const;

    std::string program_;
    int port_ = 0;
    pid_t pid_ = -1;
};

} // namespace orv::test
