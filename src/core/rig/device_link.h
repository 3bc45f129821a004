#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "core/rig/devices.h"

// The window's link to a rotator or a rig: one worker thread makes every
// device call, so a device that is switched off, unplugged or slow never
// holds up the entry row. The worker opens the device, reads it every poll,
// runs the window's commands in between, and on any failure closes it and
// tries again after the retry interval. The window only reads snapshots and
// posts commands; neither ever waits for the device.
namespace orv::rig {

struct LinkTiming {
    std::chrono::milliseconds poll{1000};
    std::chrono::milliseconds retry{2000};
    // A device call still running after this long counts as a lost link in
    // the snapshot, whatever the device's own timeout is.
    std::chrono::milliseconds callTimeout{3000};
};

enum class LinkState { Connecting, Connected, Lost };

struct RotatorSnapshot {
    LinkState state = LinkState::Connecting;
    std::optional<double> azimuth; // the last position read
    std::string error;             // why the link was lost
    std::uint64_t reads = 0;       // successful reads so far
};

struct RigSnapshot {
    LinkState state = LinkState::Connecting;
    std::optional<RigReading> reading;
    std::string error;
    std::uint64_t reads = 0;
};

// Common worker: the device-specific part is `step` (read and run commands),
// `openDevice` and `closeDevice`.
class LinkWorker {
public:
    explicit LinkWorker(LinkTiming timing) : timing_(timing) {}
    virtual ~LinkWorker() = default;
    LinkWorker(const LinkWorker&) = delete;
    LinkWorker& operator=(const LinkWorker&) = delete;

protected:
    void start();
    // Ends the worker; a device call in progress is waited for.
    void finish();
    // Wakes the worker to run a posted command before the next poll.
    void wake();

    virtual void openDevice() = 0;
    virtual void closeDevice() = 0;
    virtual void step() = 0;
    virtual void setState(LinkState s, const std::string& error) = 0;

    // Whether a device call has been running longer than callTimeout.
    bool callOverdue() const;

    mutable std::mutex mutex_;
    LinkTiming timing_;

private:
    void run();
    template <class F> bool guarded(F&& f);

    std::condition_variable wakeup_;
    bool stop_ = false;
    bool woken_ = false;
    std::optional<std::chrono::steady_clock::time_point> callStarted_;
    std::thread thread_;
};

class RotatorLink final : public LinkWorker {
public:
    RotatorLink(std::unique_ptr<Rotator> device, LinkTiming timing = {});
    ~RotatorLink() override;

    RotatorSnapshot snapshot() const;
    // The latest turn replaces one not yet sent; stop cancels it.
    void turnTo(double azimuth);
    void stop();

private:
    void openDevice() override { device_->open(); }
    void closeDevice() override { device_->close(); }
    void step() override;
    void setState(LinkState s, const std::string& error) override;

    std::unique_ptr<Rotator> device_;
    RotatorSnapshot snap_;
    std::optional<double> pendingTurn_;
    bool pendingStop_ = false;
};

class RigLink final : public LinkWorker {
public:
    RigLink(std::unique_ptr<Rig> device, LinkTiming timing = {});
    ~RigLink() override;

    RigSnapshot snapshot() const;

private:
    void openDevice() override { device_->open(); }
    void closeDevice() override { device_->close(); }
    void step() override;
    void setState(LinkState s, const std::string& error) override;

    std::unique_ptr<Rig> device_;
    RigSnapshot snap_;
};

} // namespace orv::rig
