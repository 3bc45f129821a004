#include "core/rig/device_link.h"

#include <exception>

namespace orv::rig {

void LinkWorker::start() {
    thread_ = std::thread([this] { run(); });
}

void LinkWorker::finish() {
    {
        std::lock_guard lock(mutex_);
        stop_ = true;
    }
    wakeup_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void LinkWorker::wake() {
    {
        std::lock_guard lock(mutex_);
        woken_ = true;
    }
    wakeup_.notify_all();
}

bool LinkWorker::callOverdue() const {
    return callStarted_ && std::chrono::steady_clock::now() - *callStarted_ > timing_.callTimeout;
}

template <class F> bool LinkWorker::guarded(F&& f) {
    {
        std::lock_guard lock(mutex_);
        callStarted_ = std::chrono::steady_clock::now();
    }
    std::string error;
    try {
        f();
    } catch (const std::exception& e) {
        error = e.what();
        if (error.empty())
            error = "?";
    }
    {
        std::lock_guard lock(mutex_);
        callStarted_.reset();
    }
    if (error.empty())
        return true;
    try {
        closeDevice();
    } catch (...) {
        // The device is gone either way; the next open starts afresh.
    }
    setState(LinkState::Lost, error);
    return false;
}

void LinkWorker::run() {
    bool open = false;
    for (;;) {
        {
            std::lock_guard lock(mutex_);
            if (stop_)
                break;
        }
        if (!open)
            open = guarded([this] { openDevice(); });
        if (open)
            open = guarded([this] { step(); });
        std::unique_lock lock(mutex_);
        wakeup_.wait_for(lock, open ? timing_.poll : timing_.retry,
                         [this] { return stop_ || woken_; });
        woken_ = false;
    }
    if (open) {
        try {
            closeDevice();
        } catch (...) {
            // Closing a device that went away has nothing left to do.
        }
    }
}

// --- rotator ----------------------------------------------------------------

RotatorLink::RotatorLink(std::unique_ptr<Rotator> device, LinkTiming timing)
    : LinkWorker(timing), device_(std::move(device)) {
    start();
}

RotatorLink::~RotatorLink() {
    finish();
}

RotatorSnapshot RotatorLink::snapshot() const {
    std::lock_guard lock(mutex_);
    RotatorSnapshot s = snap_;
    if (callOverdue() && s.state == LinkState::Connected)
        s.state = LinkState::Lost;
    return s;
}

void RotatorLink::turnTo(double azimuth) {
    {
        std::lock_guard lock(mutex_);
        pendingTurn_ = azimuth;
        pendingStop_ = false;
    }
    wake();
}

void RotatorLink::stop() {
    {
        std::lock_guard lock(mutex_);
        pendingTurn_.reset();
        pendingStop_ = true;
    }
    wake();
}

void RotatorLink::step() {
    std::optional<double> turn;
    bool stopNow = false;
    {
        std::lock_guard lock(mutex_);
        std::swap(turn, pendingTurn_);
        std::swap(stopNow, pendingStop_);
    }
    if (stopNow)
        device_->stop();
    if (turn)
        device_->turnTo(*turn);
    const double az = device_->position();
    std::lock_guard lock(mutex_);
    snap_.state = LinkState::Connected;
    snap_.error.clear();
    snap_.azimuth = az;
    ++snap_.reads;
}

void RotatorLink::setState(LinkState s, const std::string& error) {
    std::lock_guard lock(mutex_);
    snap_.state = s;
    snap_.error = error;
}

// --- rig --------------------------------------------------------------------

RigLink::RigLink(std::unique_ptr<Rig> device, LinkTiming timing)
    : LinkWorker(timing), device_(std::move(device)) {
    start();
}

RigLink::~RigLink() {
    finish();
}

RigSnapshot RigLink::snapshot() const {
    std::lock_guard lock(mutex_);
    RigSnapshot s = snap_;
    if (callOverdue() && s.state == LinkState::Connected)
        s.state = LinkState::Lost;
    return s;
}

void RigLink::step() {
    const RigReading r = device_->read();
    std::lock_guard lock(mutex_);
    snap_.state = LinkState::Connected;
    snap_.error.clear();
    snap_.reading = r;
    ++snap_.reads;
}

void RigLink::setState(LinkState s, const std::string& error) {
    std::lock_guard lock(mutex_);
    snap_.state = s;
    snap_.error = error;
}

} // namespace orv::rig
