#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/logstore/contest_log.h"
#include "core/reference/country_list.h"
#include "core/util/sqlite.h"
#include "support/temp_dir.h"

// Real contest logs in a temporary folder and the real country list, for the
// tests of the evaluation and the entry files.
namespace orv::test {

// A QSO with the fields the evaluation reads; the rest as a commit leaves them.
inline QsoRow qso(std::int64_t nr, std::string call, std::string locator, std::int64_t qrb,
                  std::string when = "2026-05-02 12:00:00", std::string mod = "SSB",
                  std::string modRx = "SSB", std::string rstGeg = "59",
                  std::string rstErh = "59001") {
    QsoRow q;
    q.call = std::move(call);
    q.locator = std::move(locator);
    q.qrg = 144;
    q.datTime = DateTime::fromStorage(when).value();
    q.rstGeg = std::move(rstGeg);
    q.qsoNr = nr;
    q.rstErh = std::move(rstErh);
    q.qrb = qrb;
    q.mod = std::move(mod);
    q.modRx = std::move(modRx);
    return q;
}

inline QsoRow deleted(QsoRow q) {
    q.errQso = true;
    return q;
}
inline QsoRow dupe(QsoRow q) {
    q.dupe = true;
    return q;
}

// The country list built from /usr/share/hamradio-files/cty.dat, once per
// test program.
inline const CountryList& realCountries() {
    static const std::unique_ptr<CountryList> list = [] {
        static TempDir dir;
        const auto db = dir / "QBCountry.sqlite";
        auto r = importCountryFile(db, "/usr/share/hamradio-files/cty.dat", CountryFormat::CtyDat);
        if (!r)
            throw std::runtime_error("cty.dat refused");
        return std::make_unique<CountryList>(CountryList::load(db));
    }();
    return *list;
}

// A log "Test" of OE1ABC in JN78DF with the given band weights.
inline ContestLog makeLog(const std::filesystem::path& folder,
                          std::array<int, kBandCount> zaehl = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1},
                          const std::string& name = "Test", const std::string& call = "OE1ABC") {
    std::filesystem::create_directories(folder);
    NewLogData d;
    d.myCall = call;
    d.myLocator = "JN78DF";
    d.contName = "Test Contest";
    d.zaehl = zaehl;
    return ContestLog::create(folder / (name + ".sqlite"), d);
}

// A log file of an older program version: a band table without the
// fields the program reads now.
inline void writeOldLog(const std::filesystem::path& file) {
    sql::Db db(file.string());
    db.exec("CREATE TABLE \"144MHz\" (\"Call\" TEXT, \"ErrQSO\" BOOLEAN)");
}

// Stores the rows one after the other with the totals a commit would
// write: PGesamt over the live rows, the ODX and its number.
inline void addRows(ContestLog& log, int band, const std::vector<QsoRow>& rows) {
    BandTotals t = log.totals(band);
    for (const QsoRow& q : rows) {
        if (!q.errQso) {
            t.pGesamt += q.qrb;
            if (q.qrb > t.odx) {
                t.odx = q.qrb;
                t.odxNr = q.qsoNr;
            }
        }
        log.addQso(band, q, t);
    }
}

} // namespace orv::test
