// A shared contest is evaluated and exported for the whole station: the own
// rows and the other positions' QSOs held in the log file.

#include <gtest/gtest.h>

#include "core/shared/shared_store.h"
#include "core/submission/adif.h"
#include "core/submission/evaluation.h"
#include "submission_support.h"

namespace orv::test {
namespace {

constexpr int k144 = 1;
constexpr int k432 = 2;

TEST(SharedEvaluation, CoversTheOtherPositionsQsos) {
    TempDir dir;
    ContestLog log = makeLog(dir.path(), {1, 2, 1, 1, 1, 1, 1, 1, 1, 1});
    addRows(log, k144, {qso(1, "DL1AA", "JO62QM", 100), qso(3, "DL3CC", "JO31AB", 200)});
    SharedStore::enable(log.db(), {"postgresql://u@h/db", "A", "Test"});
    SharedStore store(log.db());
    store.applyIncoming({{"u2", k144, "B", 1, 1, qso(2, "OK1BB", "JN79AA", 500)},
                         {"u4", k144, "B", 1, 2, deleted(qso(4, "OK2XX", "JN89AA", 900))},
                         {"u5", k432, "B", 1, 3, qso(1, "G4ABC", "IO91VL", 800)}});

    const Evaluation ev = evaluate(log, k144, nullptr);
    ASSERT_EQ(ev.rows.size(), 4u);
    std::vector<std::string> order;
    for (const auto& r : ev.rows)
        order.push_back(r.cells[evalcol::Call]);
    EXPECT_EQ(order, (std::vector<std::string>{"DL1AA", "OK1BB", "DL3CC", "OK2XX"}));
    EXPECT_EQ(ev.points, (100 + 500 + 200) * 2);
    EXPECT_EQ(ev.deleted, 1);
    // The station's ODX is B's QSO, not the one `MyData` holds for A; a
    // deleted QSO further out does not count.
    EXPECT_EQ(ev.odx, 500 * 2);
    EXPECT_EQ(ev.odxRow()->cells[evalcol::Call], "OK1BB");
    EXPECT_TRUE(ev.bandsWithQsos[k432]);

    const std::string adif = adifText(evaluateAllBands(log, nullptr), AdifFrequencies{});
    for (const char* call : {"DL1AA", "OK1BB", "DL3CC", "G4ABC"})
        EXPECT_NE(adif.find(call), std::string::npos) << call;
}

} // namespace
} // namespace orv::test
