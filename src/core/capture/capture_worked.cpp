// Duplicates and stations worked before: `CallExistTest` on the band,
// `WorkAlso` over the other bands, and the marks of the lookup list.
#include "core/capture/capture.h"

#include <algorithm>
#include <cmath>

#include "core/capture/capture_checks.h"
#include "core/capture/entry_rules.h"
#include "core/locator/locator.h"
#include "core/settings/settings.h"
#include "core/util/text.h"

namespace orv {

using namespace capture_detail;

DuplicatePanel Capture::panelOf(const QsoRow& q) const {
    DuplicatePanel p;
    p.dup = {q.datTime.timeHM(),
             q.call,
             q.rstGeg,
             entry::formatGridSerial(q.qsoNr),
             q.rstErh,
             q.locator,
             std::to_string(q.qrb),
             q.qsl ? "Yes" : "No",
             q.mod,
             texts_(200) + " " + q.notice};
    return p;
}

std::optional<DuplicatePanel> Capture::CallExistTest(std::string_view call) {
    // The search is case-blind on the trimmed call; calls are stored upper
    // case, so the upper-cased key finds them through CallIndex.
    const std::string key = text::upper(text::trim(call));
    if (key.empty() || state_.band() < 0)
        return std::nullopt;
    // Rows of one call follow each other in CallIndex order. The row found
    // first decides when it is live; a row reached by skipping deleted ones
    // is compared with the call as given.
    bool skipped = false;
    for (const QsoRow& q : log_.rowsByCall(state_.band(), key)) {
        if (q.errQso) {
            skipped = true;
            continue;
        }
        if (skipped && q.call != call)
            return std::nullopt;
        return panelOf(q);
    }
    if (others_)
        if (auto q = others_->liveQso(state_.band(), key))
            return panelOf(*q);
    return std::nullopt;
}

WorkedBands::Bands Capture::workedBands(std::string_view call) {
    for (int b = 0; b < kBandCount; ++b) {
        const auto i = static_cast<std::size_t>(b);
        if (workedFresh_[i])
            continue;
        // A band in memory is counted from there, any other from the file.
        const BandState* held = nullptr;
        if (b == state_.band() && !stale_)
            held = &state_;
        else if (held_[i])
            held = &*held_[i];
        if (held)
            worked_.setBand(b, held->rows());
        else
            worked_.setBand(b, log_.rows(b));
        workedFresh_[i] = true;
    }
    WorkedBands::Bands bands = worked_.of(call);
    // Other positions of a shared contest count as the log of the station.
    if (others_) {
        const std::string key = text::upper(text::trim(call));
        for (int b = 0; b < kBandCount; ++b)
            if (!bands.test(static_cast<std::size_t>(b)) && !key.empty() &&
                others_->liveQso(b, key))
                bands.set(static_cast<std::size_t>(b));
    }
    return bands;
}

std::int64_t Capture::serialToGive() const {
    std::int64_t serial = state_.LastQSONr + 1;
    if (others_ && state_.band() >= 0) {
        serial = std::max(serial, others_->highestSerial(state_.band()) + 1);
        if (const auto held = others_->heldSerial(state_.band()); held && *held > serial)
            serial = *held;
    }
    return serial;
}

std::string Capture::nextSerial() const {
    return entry::formatSerial(serialToGive());
}

std::vector<WorkedOnBand> Capture::WorkAlso(std::string_view call) {
    std::vector<WorkedOnBand> out;
    const std::string c = text::upper(text::trim(call));
    for (int b = 0; b < kBandCount; ++b) {
        if (b == state_.band())
            continue;
        auto rows = log_.rowsByCall(b, c);
        // Only the first row in index order is looked at: a deleted first row
        // hides a live one behind it.
        if (rows.empty() || rows.front().call != c || rows.front().errQso) {
            auto other = others_ ? others_->liveQso(b, c) : std::nullopt;
            if (!other)
                continue;
            rows = {*other};
        }
        const QsoRow& q = rows.front();
        out.push_back(WorkedOnBand{b,
                                   {std::string(orv::band(b).boxText), q.call, q.locator, q.rstGeg,
                                    entry::formatGridSerial(q.qsoNr), q.rstErh,
                                    std::to_string(q.qrb), q.datTime.timeHM()}});
    }
    return out;
}

std::vector<std::string>
Capture::workedBeforeLines(std::string_view typed,
                           const std::set<std::string>* locatorCalls) const {
    std::vector<std::string> lines;
    const std::string t = text::upper(text::trim(typed));
    if (text::length(t) <= 2)
        return lines;
    const auto matches = state_.workedMatches(t);
    lines.reserve(matches.size());
    for (std::size_t i : matches) {
        const QsoRow& q = state_.rows()[i].qso;
        if (locatorCalls && !locatorCalls->count(q.call))
            continue;
        lines.push_back(workedLine(q));
    }
    return lines;
}

std::string Capture::workedLine(const QsoRow& q) const {
    const std::string& mark = texts_(216);
    std::string line = text::padRight(q.call, 13);
    line.reserve(line.size() + q.locator.size() + 1 + mark.size());
    line += q.locator;
    line += ' ';
    line += mark;
    return line;
}

} // namespace orv
