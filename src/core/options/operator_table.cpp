#include "core/options/operator_table.h"

#include <algorithm>
#include <cstdio>

#include "core/keying/cw_macros.h"
#include "core/keying/tone_file.h"
#include "core/options/option_rules.h"
#include "core/util/text.h"

namespace orv::options {

std::string toneFileName(const DateTime& t) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%02d%02d%02d%02d%02d%02d.wav", t.day % 100, t.month % 100,
                  t.year % 100, t.hour % 100, t.minute % 100, t.second % 100);
    return buf;
}

OperatorTable::OperatorTable(std::vector<OpCall> rows, std::filesystem::path cwAudioFolder)
    : rows_(std::move(rows)), folder_(std::move(cwAudioFolder)) {}

Result<int> OperatorTable::add(std::string_view call) {
    const std::string c = text::upper(text::trim(call));
    if (c.empty())
        return refuse(53);
    for (const OpCall& op : rows_)
        if (text::upper(op.call) == c)
            return refuse(252);
    rows_.push_back(OpCall{c});
    return size() - 1;
}

void OperatorTable::remove(int row) {
    if (row < 0 || row >= size())
        return;
    retire(rows_[row].toneFile);
    rows_.erase(rows_.begin() + row);
}

bool OperatorTable::move(int row, int by) {
    const int to = row + by;
    if (row < 0 || row >= size() || to < 0 || to >= size())
        return false;
    std::swap(rows_[row], rows_[to]);
    return true;
}

void OperatorTable::setVoiceFile(int row, const std::string& file) {
    if (row >= 0 && row < size())
        rows_[row].voiceFile = text::trim(file);
}

Status OperatorTable::setBeaconText(int row, std::string_view typed, int wpm, const DateTime& now) {
    if (row < 0 || row >= size())
        return refuse(308);
    const std::string t = cwEndText(typed);
    if (keying::sendableAnsi(t).empty())
        return refuse(308);
    if (const Status s = checkWpm(wpm); !s)
        return s;
    rows_[row].beaconText = t;
    render(row, wpm, now);
    return okStatus();
}

void OperatorTable::clearBeaconText(int row) {
    if (row < 0 || row >= size())
        return;
    retire(rows_[row].toneFile);
    rows_[row].beaconText.clear();
    rows_[row].toneFile.clear();
}

void OperatorTable::rebuildAll(int wpm, const DateTime& now,
                               const std::function<void(int, int)>& progress) {
    const int total = textRows();
    int done = 0;
    for (int r = 0; r < size(); ++r) {
        if (rows_[r].beaconText.empty())
            continue;
        render(r, wpm, now);
        if (progress)
            progress(++done, total);
    }
}

int OperatorTable::textRows() const {
    return static_cast<int>(std::count_if(rows_.begin(), rows_.end(),
                                          [](const OpCall& o) { return !o.beaconText.empty(); }));
}

void OperatorTable::commit() {
    std::error_code ec;
    for (const std::string& f : retired_)
        std::filesystem::remove(folder_ / f, ec);
    retired_.clear();
    made_.clear();
}

void OperatorTable::rollback() {
    std::error_code ec;
    for (const std::string& f : made_)
        std::filesystem::remove(folder_ / f, ec);
    made_.clear();
    retired_.clear();
}

std::string OperatorTable::freshName(DateTime t) const {
    // Files made within one second (a whole table at a new speed) would
    // share a name: the next free second is taken instead.
    for (;;) {
        const std::string name = toneFileName(t);
        std::error_code ec;
        if (!made_.count(name) && !retired_.count(name) &&
            !std::filesystem::exists(folder_ / name, ec))
            return name;
        t = t.addSeconds(1);
    }
}

void OperatorTable::retire(const std::string& file) {
    const std::string f = text::trim(file);
    if (f.empty())
        return;
    // A file made in this session and already replaced can go at once.
    if (made_.erase(f)) {
        std::error_code ec;
        std::filesystem::remove(folder_ / f, ec);
        return;
    }
    // Only plain names inside CWAudio are the table's own files.
    if (std::filesystem::path(f).filename().string() == f)
        retired_.insert(f);
}

void OperatorTable::render(int row, int wpm, const DateTime& now) {
    std::error_code ec;
    std::filesystem::create_directories(folder_, ec);
    const std::string name = freshName(now);
    keying::BuildToneFile(wpm, folder_ / name, keying::sendableAnsi(rows_[row].beaconText), 1, 6);
    made_.insert(name);
    retire(rows_[row].toneFile);
    rows_[row].toneFile = name;
}

} // namespace orv::options
