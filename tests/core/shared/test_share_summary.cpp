// The positions panel's figures, read beside the window over a connection
// of their own: again only when some writer changed the file.

#include <gtest/gtest.h>

#include <functional>

#include "core/logstore/contest_log.h"
#include "core/shared/share_summary.h"
#include "core/shared/shared_store.h"
#include "support/temp_dir.h"

namespace orv {
namespace {

constexpr int k144 = 1;
constexpr int k432 = 2;

TEST(ShareSummary, ReadsAgainOnlyAfterAChangeOrForAnotherBand) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "A.sqlite", NewLogData{"OE1ABC", "JN78DF", "Test", {}});
    SharedStore::enable(log.db(), {"postgresql://u@h/db", "A", "Test"});
    SharedStore store(log.db());
    auto remote = [&](const std::string& uid, const std::string& call, std::int64_t nr,
                      const std::string& locator, std::int64_t qrb) {
        QsoRow q;
        q.call = call;
        q.locator = locator;
        q.qsoNr = nr;
        q.qrb = qrb;
        q.datTime = DateTime{2026, 5, 2, 14, 0, 0};
        store.applyIncoming({{uid, k144, "B", 1, nr, q}});
    };
    remote("u1", "DL1XYZ", 1, "JN88EF", 120);
    remote("u2", "DL2XYZ", 1, "JO62QM", 480);

    ShareSummaryReader reader(dir / "A.sqlite");
    struct Step {
        const char* what;
        int band;
        std::function<void()> change;
        int reads;
        std::int64_t qsos, km, odx, squares;
        std::size_t doubles;
    };
    const Step steps[] = {
        {"first look", k144, nullptr, 1, 2, 600, 480, 2, 1},
        {"nothing changed", k144, nullptr, 1, 2, 600, 480, 2, 1},
        {"another band", k432, nullptr, 2, 0, 0, 0, 0, 0},
        {"back, unchanged", k144, nullptr, 3, 2, 600, 480, 2, 1},
        {"a QSO arrived", k144, [&] { remote("u3", "OK1AB", 2, "JO70AB", 300); }, 4, 3, 900, 480, 3,
         1},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(s.what);
        if (s.change)
            s.change();
        const ShareSummary got = reader.read(s.band);
        EXPECT_EQ(reader.reads(), s.reads);
        EXPECT_EQ(got.band, s.band);
        EXPECT_EQ(got.figures.qsos, s.qsos);
        EXPECT_EQ(got.figures.km, s.km);
        EXPECT_EQ(got.figures.odx, s.odx);
        EXPECT_EQ(got.figures.squares, s.squares);
        EXPECT_EQ(got.doubles.size(), s.doubles);
    }
}

} // namespace
} // namespace orv
