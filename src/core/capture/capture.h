#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/capture/band_loader.h"
#include "core/capture/band_state.h"
#include "core/capture/worked_bands.h"
#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "core/util/ports.h"
#include "core/util/result.h"

namespace orv {

// The entry row of the main window as `Uebernehmen` reads it. Field names in
// the comments are the window's controls.
struct EntryRow {
    std::string call;       // Text3
    std::string rst = "59"; // Text4, RSTgeg
    std::string serial;     // Text5, QSONr; empty: the band's next serial
    std::string rstNr;      // Text6, RSTerh
    std::string locator;    // Text7
    std::string note;       // Text9
    std::string qsl = "No"; // Text10
    std::string time;       // Text2
    std::string date;       // Text1, read only while the date panel is shown
    bool datePanel = false; // Picture13 visible
    std::string mode;       // Combo3, transmit mode
    std::string rxMode;     // Combo2, receive mode
    std::string prop;       // Combo6
    std::string op;         // Combo8
    std::string name;       // CurrentName

    // The rig's frequency on the band in Hz, 0 without a rig.
    std::int64_t freqHz = 0;
};

// The settings the capture reads.
struct CaptureConfig {
    std::string ownLocator;       // MyData MyLocator (Text13)
    int zeitPlusMinus = 0;        // hours added to the computer's clock
    std::string mode2St = "SSB";  // mode of two-digit reports
    std::string mode3St = "CW";   // mode of three-digit reports
    std::string editMode3 = "CW"; // the second entry of the mode list (correction line)
    bool antenneKomma = false;
};

// The duplicate panel `Picture11`: Dup(0) .. Dup(9).
struct DuplicatePanel {
    std::array<std::string, 10> dup;
};

// One row of the worked-on-other-bands grid `MSFlexGrid2`.
struct WorkedOnBand {
    int band = 0;
    std::array<std::string, 8> cells; // band, call, locator, RSTgeg, QSONr, RSTerh, QRB, time
};

struct CommitResult {
    enum class Kind { Stored, Refused, Duplicate };
    Kind kind = Kind::Refused;
    Failure failure;          // Refused: text number and the field to focus
    DuplicatePanel duplicate; // Duplicate: the earlier QSO
    GridRow stored;           // Stored: the new row as the grid shows it
};

// The correction line: the selected row's fields as the user changed them.
struct EditRow {
    std::string call;    // Text33
    std::string rst;     // Text44
    std::string rstNr;   // Text66
    std::string locator; // Text77
    std::string time;    // Text22
    std::string date;    // Text14
    std::string mode;    // Combo4
    std::string qsl;     // Text101
    std::string note;    // Text99
    std::string rxMode;  // Combo5
    std::string prop;    // Combo7
    std::string op;      // Combo9
    std::string qrb;     // Text88
    std::string name;    // EditName: kept aside and written back
};

// The correction line filled from a grid row's cells.
EditRow editRowFromCells(const GridCells& cells);

// The QSO capture of one open log: the selected band's state and every
// routine that changes a QSO. Each change writes the band table and `MyData`
// in one transaction before the state in memory follows, so the screen never
// shows what the file does not hold.
// The capture's settings from the settings file and the log's `MyData`.
CaptureConfig captureConfigFrom(class Settings& settings, const MyDataRow& myData);

// The QSOs of the station's other positions when the contest is shared:
// they count for duplicates, for worked-before on the other bands and for
// the next serial; the band's rows and totals stay this position's own.
class OtherPositions {
public:
    virtual ~OtherPositions() = default;
    // The first live QSO of the call (upper case, trimmed) on the band.
    virtual std::optional<QsoRow> liveQso(int band, std::string_view call) = 0;
    // The highest QSO number the other positions gave on the band.
    virtual std::int64_t highestSerial(int band) = 0;
    // The number the station holds for this position's next QSO on the band,
    // when it has one: it stands above what the others may give meanwhile.
    virtual std::optional<std::int64_t> heldSerial(int) { return std::nullopt; }
};

class Capture {
public:
    Capture(ContestLog& log, CaptureConfig config, Clock& clock, Dialogs& dialogs,
            const Texts& texts);
    ~Capture();

    // Band change: the band's rows and its stored totals, as a fresh load
    // from the file gives them. A band held in memory is swapped in, any
    // other is read now; the band left stays held.
    void selectBand(int band);
    int band() const { return state_.band(); }
    const BandState& state() const { return state_; }
    const CaptureConfig& config() const { return config_; }
    // The bearings of held bands follow the own locator: they are dropped.
    void setConfig(CaptureConfig c);

    // --- bands held in memory (capture_bands.cpp) ------------------------------
    // Every change through this capture keeps the held bands equal to a fresh
    // load; changes made by any other writer are noticed and the bands are
    // read again.
    //
    // Loads every band with QSOs that is not held yet on a worker thread.
    // `ready` runs on that thread each time a band is loaded and must only
    // ask the capture's own thread to call adoptLoaded().
    void preloadBands(std::function<void()> ready);
    // Stops the worker (waiting at most for the band in hand).
    void stopPreload();
    // Waits until the worker has loaded every band asked for and takes them
    // (tests and benchmarks).
    void waitForPreload();
    // Takes what the worker loaded, unless the band changed since it was
    // asked for. Returns the number of bands taken.
    int adoptLoaded();
    // Whether the file was changed by another connection (another process,
    // another position) or by a writer on this connection other than the
    // capture since the last look. If so every held band is dropped, the
    // selected one is read again and the others are queued for the worker.
    bool refreshIfChangedElsewhere();
    // Drops the bands that another writer changed; the selected band among
    // them is read again at the next selectBand(). The way in for writers
    // that tell which bands they touched.
    void bandsChangedElsewhere(const std::array<bool, kBandCount>& touched);
    // What a band change to `band` would show now, when it is in memory.
    std::optional<BandState> bandAsShown(int band) const;
    bool holds(int band) const;
    // What the held bands, the selected one included, take in memory.
    std::size_t heldBytes() const;

    // Shares duplicates and serials with the other positions; nullptr alone.
    void setOtherPositions(OtherPositions* others) { others_ = others; }
    // The serial the next QSO of the selected band gets: after the band's
    // last, and after the other positions' last when shared.
    std::string nextSerial() const;

    // Log time: the computer's clock plus `ZeitPlusMinus` hours.
    DateTime logNow() const;

    // `Uebernehmen`: validates the row in the order of the checks, refuses a
    // duplicate, stores the QSO with the band's totals in one transaction and
    // prepares the row for the next QSO. The row is left as it was unless
    // the QSO was stored.
    CommitResult Uebernehmen(EntryRow& row);
    // The row cleared for the next QSO (also F10 / Ctrl+W).
    static void clearEntry(EntryRow& row);

    // `CallExistTest`: the first live QSO of the call on the selected band,
    // compared exactly as typed.
    std::optional<DuplicatePanel> CallExistTest(std::string_view call);
    // The bands on which `call` has a live QSO, the selected one included,
    // from an index that every change through the capture keeps current; a
    // band changed elsewhere is counted again at the next look.
    WorkedBands::Bands workedBands(std::string_view call);
    // `WorkAlso`: the first row of the call on each other band, if live.
    std::vector<WorkedOnBand> WorkAlso(std::string_view call);
    // Worked-before lines of the lookup list for a typed part of a call
    // (longer than 2 characters); `locatorCalls` filters when the locator
    // search holds a result.
    std::vector<std::string> workedBeforeLines(std::string_view typed,
                                               const std::set<std::string>* locatorCalls) const;
    // The same for the locator search: live rows whose locator holds
    // `typedLocator`, narrowed by a part of a call when one is typed.
    std::vector<std::string> workedBeforeLinesByLocator(std::string_view typedLocator,
                                                        std::string_view callPart) const;

    // `ErrQSO`: asks IText(17), marks the QSO deleted and rebuilds the totals.
    // Returns false when the user said No or no row has this number.
    bool ErrQSO(std::int64_t qsoNr);
    // `MnGrid1KillRetur`: restores the deleted row at grid index `row`;
    // refused with IText(229) while its call is live on the band.
    Status restore(std::size_t row);
    // `UebernehmenEdit`: stores the correction of the row at grid index
    // `row`. The "mark as DUPE" question IText(21) goes through Dialogs.
    Status UebernehmenEdit(std::size_t row, const EditRow& edit);
    // The correction line filled from a grid row (`EditView`).
    EditRow editView(std::size_t row) const;
    // `MnLogLoeschen`: two questions, then the band is emptied. True when it
    // was emptied: the caller shows IText(31) and ends the program.
    bool MnLogLoeschen();

    // The ODX message box text, or empty when no grid row has `ODXNr`.
    std::string odxMessage() const;
    // Distance and bearing of the locator preview while typing: nothing for
    // a text the preview does not complete or an invalid locator.
    struct Preview {
        std::int64_t km = 0;
        std::string bearing; // "89°"
    };
    std::optional<Preview> preview(std::string_view typedLocator) const;

    // Last committed call and locator, for F2.
    const std::string& lastCall() const { return lastCall_; }
    const std::string& lastLocator() const { return lastLocator_; }

    // Called after every stored change (the backup after each change).
    std::function<void()> afterChange;

private:
    // The next QSO number of the band: after this position's last and the
    // other positions' highest, or the number held for it when that is
    // higher.
    std::int64_t serialToGive() const;
    std::optional<QsoRow> rowForCommit(const EntryRow& row, Failure& failure) const;
    DuplicatePanel panelOf(const QsoRow& q) const;
    // A worked-before line of the lookup list: call in 13 columns, locator,
    // the mark IText(216).
    std::string workedLine(const QsoRow& q) const;
    // The walk over the live rows that rebuilds ODX, ODXNr and PGesamt, with
    // one row seen as `replacement` (the change about to be stored).
    struct Walk {
        std::int64_t odx = 0, odxNr = 0, sum = 0;
        bool improved = false; // some live row set the ODX
    };
    Walk walk(std::size_t replacedRow, const QsoRow* replacement) const;
    // What `MyData` holds after the walk: ODX and ODXNr are written only when
    // the walk found one (or when asked to always), as the old routine did.
    static BandTotals storedAfter(const Walk& w, BandTotals stored, bool alwaysWriteOdx);
    // The state follows the file after a stored change.
    void applyWalk(const Walk& w, const BandTotals& stored);
    void markRow(std::size_t row, bool deleted);
    void updateKmPerQsoAfterRebuild();
    void changed();
    // Runs a write of the log and counts its rows as the capture's own, so
    // that only the rows of other writers count as changes elsewhere.
    template <class Write> auto ownWrite(Write&& write) {
        const std::int64_t before = log_.totalChanges();
        struct Count {
            Capture& c;
            std::int64_t before;
            ~Count() { c.seenChanges_ += c.log_.totalChanges() - before; }
        } count{*this, before};
        return write();
    }
    bool noticeChangesElsewhere();
    void requestPreload();

    ContestLog& log_;
    CaptureConfig config_;
    Clock& clock_;
    Dialogs& dialogs_;
    const Texts& texts_;
    BandState state_;
    // True when the selected band's state no longer matches the file.
    bool stale_ = false;
    std::array<std::optional<BandState>, kBandCount> held_;
    // Moves on with every change of a band made elsewhere: a band the worker
    // read before it is not taken.
    std::array<std::uint64_t, kBandCount> generation_{};
    std::int64_t seenVersion_ = 0;
    std::int64_t seenChanges_ = 0;
    std::unique_ptr<BandLoader> loader_;
    WorkedBands worked_;
    std::array<bool, kBandCount> workedFresh_{};
    std::string lastCall_, lastLocator_;
    OtherPositions* others_ = nullptr;
};

} // namespace orv
