// The bands held in memory: the band change swaps them, a worker thread
// loads the others, and a change of the file by another writer drops them.
#include "core/capture/capture.h"

namespace orv {

void Capture::selectBand(int band) {
    adoptLoaded();
    noticeChangesElsewhere();
    const int old = state_.band();
    if (old != band || stale_) {
        // The new state is complete before the old one is parked, so that a
        // failed read leaves the window on the band it showed.
        BandState next;
        auto& slot = held_.at(static_cast<std::size_t>(band));
        if (slot) {
            next = std::move(*slot);
            slot.reset();
        } else {
            ContestLog::BandSnapshot s = log_.bandSnapshot(band);
            next.load(band, std::move(s.rows), s.totals, config_.ownLocator, config_.antenneKomma);
        }
        if (old >= 0 && old != band && !stale_)
            held_[static_cast<std::size_t>(old)] = std::move(state_);
        state_ = std::move(next);
        stale_ = false;
    }
    state_.settle();
    if (!state_.rows().empty()) {
        lastCall_ = state_.rows().back().qso.call;
        lastLocator_ = state_.rows().back().qso.locator;
    }
}

void Capture::setConfig(CaptureConfig c) {
    config_ = std::move(c);
    std::array<bool, kBandCount> all;
    all.fill(true);
    bandsChangedElsewhere(all);
}

void Capture::preloadBands(std::function<void()> ready) {
    loader_ = std::make_unique<BandLoader>(log_.path(), std::move(ready));
    requestPreload();
}

void Capture::stopPreload() {
    loader_.reset();
}

void Capture::requestPreload() {
    if (!loader_)
        return;
    const auto withQsos = log_.bandsWithQsos();
    for (int b = 0; b < kBandCount; ++b) {
        const auto i = static_cast<std::size_t>(b);
        if (withQsos[i] && !holds(b))
            loader_->request({b, generation_[i], config_.ownLocator, config_.antenneKomma});
    }
}

void Capture::waitForPreload() {
    if (loader_)
        loader_->waitIdle();
    adoptLoaded();
}

int Capture::adoptLoaded() {
    if (!loader_)
        return 0;
    int taken = 0;
    for (BandLoader::Loaded& l : loader_->take()) {
        const auto i = static_cast<std::size_t>(l.band);
        if (holds(l.band) || l.generation != generation_[i])
            continue;
        held_[i] = std::move(l.state);
        ++taken;
    }
    return taken;
}

bool Capture::noticeChangesElsewhere() {
    const std::int64_t version = log_.dataVersion();
    const std::int64_t changes = log_.totalChanges();
    if (version == seenVersion_ && changes == seenChanges_)
        return false;
    seenVersion_ = version;
    seenChanges_ = changes;
    // The file does not say which bands moved: all are read again.
    std::array<bool, kBandCount> all;
    all.fill(true);
    bandsChangedElsewhere(all);
    return true;
}

bool Capture::refreshIfChangedElsewhere() {
    adoptLoaded();
    if (!noticeChangesElsewhere())
        return false;
    if (state_.band() >= 0)
        selectBand(state_.band());
    return true;
}

void Capture::bandsChangedElsewhere(const std::array<bool, kBandCount>& touched) {
    for (int b = 0; b < kBandCount; ++b) {
        const auto i = static_cast<std::size_t>(b);
        if (!touched[i])
            continue;
        held_[i].reset();
        ++generation_[i];
        workedFresh_[i] = false;
        if (b == state_.band())
            stale_ = true;
    }
    requestPreload();
}

bool Capture::holds(int band) const {
    if (band < 0 || band >= kBandCount)
        return false;
    return (band == state_.band() && !stale_) || held_[static_cast<std::size_t>(band)].has_value();
}

std::optional<BandState> Capture::bandAsShown(int band) const {
    std::optional<BandState> s;
    if (band == state_.band() && !stale_)
        s = state_;
    else if (holds(band))
        s = held_[static_cast<std::size_t>(band)];
    if (s)
        s->settle();
    return s;
}

std::size_t Capture::heldBytes() const {
    std::size_t n = stale_ ? 0 : state_.memoryBytes();
    for (const auto& h : held_)
        if (h)
            n += h->memoryBytes();
    return n;
}

} // namespace orv
