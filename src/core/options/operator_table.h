#pragma once

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings/settings.h"
#include "core/util/datetime.h"
#include "core/util/result.h"

// The operator table of the options dialog (`OPCallList`) while it is being
// edited: the rows of both grids, and the tone files of the CW beacon texts,
// which are rendered as soon as a text is entered. Files made while editing
// are removed again when the dialog is cancelled; files that a row no longer
// names are removed only when the table is saved, so a cancelled dialog
// leaves the beacon exactly as it was.
namespace orv::options {

// "ddmmyy" + "hhmmss" + ".wav"
std::string toneFileName(const DateTime& t);

class OperatorTable {
public:
    OperatorTable(std::vector<OpCall> rows, std::filesystem::path cwAudioFolder);

    const std::vector<OpCall>& rows() const { return rows_; }
    int size() const { return static_cast<int>(rows_.size()); }

    // `Command29`: a new row for a call, upper-cased; IText(53) for an empty
    // call, IText(252) for one that is there. Returns the new row.
    Result<int> add(std::string_view call);
    // `Command25`: the row goes, and with it (on saving) its tone file.
    void remove(int row);
    // `Command27`, `Command28`: false when the row is at the end already.
    bool move(int row, int by);
    // `Command29`, `Command26`: the voice file of a row.
    void setVoiceFile(int row, const std::string& file);
    // `Command32`, `Command31`: the beacon text, rendered at `wpm` into a new
    // file `CWAudio/ddmmyyhhmmss.wav` with 1 unit before and 6 behind. A
    // text without any character that can be keyed is refused with
    // IText(308); a speed outside the list with the speed's row.
    Status setBeaconText(int row, std::string_view text, int wpm, const DateTime& now);
    // `Command30`: the row keeps its call and voice file.
    void clearBeaconText(int row);
    // Every row with a beacon text gets its file rendered anew at `wpm`,
    // once, under a new name. `progress(done, total)` after each file.
    void rebuildAll(int wpm, const DateTime& now, const std::function<void(int, int)>& progress);
    // The rows that have a beacon text.
    int textRows() const;

    // Saving: the files no row names any more are deleted.
    void commit();
    // Cancelling: the files made while editing are deleted.
    void rollback();

private:
    std::string freshName(DateTime t) const;
    void retire(const std::string& file);
    void render(int row, int wpm, const DateTime& now);

    std::vector<OpCall> rows_;
    std::filesystem::path folder_;
    std::set<std::string> made_;
    std::set<std::string> retired_;
};

} // namespace orv::options
