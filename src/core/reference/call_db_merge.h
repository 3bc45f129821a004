#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/logstore/contest_log.h"
#include "core/reference/call_image.h"

// The call database and the contest logs: the merge of a finished log
// (`DBAktual`) and the comparison of a band's QSOs with the database.
namespace orv {

struct AppPaths;

// Whether band `band` of the log `logName` (without ".sqlite") has been merged
// into the call database: `QBDat.ini` holds a non-zero number under the log's
// section and the band's box text.
bool bandMerged(const AppPaths& paths, std::string_view logName, int band);
// `MindestZahl`: QSOs the database must know of a call and locator on the
// band before a QSO is beyond doubt; one more once the log itself is merged.
int MindestZahl(const AppPaths& paths, std::string_view logName, int band);

struct MergeCount {
    int qsos = 0;    // live QSOs counted into the database
    int added = 0;   // new rows
    int skipped = 0; // QSOs whose call or locator the database cannot hold
    std::vector<int> bandsMerged;
    std::vector<int> bandsAlreadyMerged; // left alone, so nothing counts twice
};

// `DBAktual`: counts every live QSO of each band not yet merged into the
// call database: the row of the same call and locator gets +1 on the band and
// the later `LastDate`; a row of the call without a locator takes the
// locator; otherwise a new row. One transaction for the database, then each
// merged band is noted in `QBDat.ini` with its QSO count.
MergeCount DBAktual(const AppPaths& paths, ContestLog& log, std::string_view logName);

enum class CompareBy { Call, Locator };

// One group of the comparison: a QSO that is not beyond doubt and the
// records that resemble it, in the order found.
struct CompareGroup {
    QsoRow qso;
    std::vector<std::uint32_t> records; // record numbers of the image
};

// The database comparison over the rows of a band (grid order, deleted rows
// skipped). By call, a record is a candidate when its call holds the QSO's
// call and the character behind that part is "/" or there is none behind it
// and the calls are equal; by locator when its locator holds the QSO's
// locator. A record with the same call and locator and at least `mindestZahl`
// QSOs on the band puts the QSO beyond doubt.
std::vector<CompareGroup> compareWithCallDb(const QBDatImage& image,
                                            const std::vector<QsoRow>& rows, int band,
                                            int mindestZahl, CompareBy by);

} // namespace orv
