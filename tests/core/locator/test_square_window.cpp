#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/locator/square_window.h"
#include "support/fakes.h"

using namespace orv;

namespace {

struct Cell {
    int row;
    int col;
    const char* text;
};

void expectCells(const LocFenster& w, const std::vector<Cell>& cells) {
    for (const auto& c : cells)
        EXPECT_EQ(w.at(c.row, c.col).text, c.text) << "row " << c.row << " col " << c.col;
}

int countColoured(const LocFenster& w, LocFarbe f) {
    int n = 0;
    for (const auto& row : w.zelle)
        for (const auto& cell : row)
            n += cell.farbe == f ? 1 : 0;
    return n;
}

} // namespace

TEST(LocUnt, SquaresAroundTheOwnStation) {
    test::CountingBeeper beeper;
    const LocFenster w = LocUnt("JN78DF", "JN88,JN79,JO62,IN58,KM96,HN78,JQ78", beeper);
    EXPECT_EQ(beeper.beeps, 0);
    EXPECT_TRUE(w.gezeichnet);
    expectCells(w, {
                       {12, 12, "JN78"}, // centre
                       {12, 13, "JN88"}, // east: third character up
                       {12, 11, "JN68"},
                       {11, 12, "JN79"}, // north: fourth character up
                       {13, 12, "JN77"},
                       {12, 0, "IN58"}, // 12 squares west, over the I/J edge
                       {0, 0, "IP50"},  // top-left, 12 north over N/O and O/P
                       {0, 12, "JP70"},
                       {24, 24, "KM96"}, // bottom-right, 12 south over M/N
                       {24, 0, "IM56"},
                       {0, 24, "KP90"},
                   });
    EXPECT_EQ(w.at(12, 12).farbe, LocFarbe::Magenta); // own square not worked
    EXPECT_EQ(w.at(12, 13).farbe, LocFarbe::Cyan);
    EXPECT_EQ(w.at(11, 12).farbe, LocFarbe::Cyan);
    EXPECT_EQ(w.at(12, 0).farbe, LocFarbe::Cyan);
    EXPECT_EQ(w.at(13, 12).farbe, LocFarbe::Keine);
    // JO62: one column west, four rows north
    EXPECT_EQ(w.at(8, 11).text, "JO62");
    EXPECT_EQ(w.at(8, 11).farbe, LocFarbe::Cyan);
    EXPECT_EQ(w.at(24, 24).farbe, LocFarbe::Cyan);
    // HN78 and JQ78 lie outside the 25 x 25 field
    EXPECT_EQ(countColoured(w, LocFarbe::Cyan), 5);
    EXPECT_EQ(countColoured(w, LocFarbe::Magenta), 1);
    EXPECT_EQ(countColoured(w, LocFarbe::Gruen), 0);
}

TEST(LocUnt, WorkedOwnSquareTurnsGreen) {
    test::CountingBeeper beeper;
    const LocFenster w = LocUnt("jn78df", "JN78", beeper);
    EXPECT_EQ(w.at(12, 12).text, "JN78");
    EXPECT_EQ(w.at(12, 12).farbe, LocFarbe::Gruen);
    EXPECT_EQ(countColoured(w, LocFarbe::Cyan), 0);
    EXPECT_EQ(countColoured(w, LocFarbe::Magenta), 0);
    // After the wrap over the north the centre shows KR95: the own JR95 being
    // worked does not colour it, KR95 being worked does.
    EXPECT_EQ(LocUnt("JR95", "JR95", beeper).at(12, 12).farbe, LocFarbe::Magenta);
    EXPECT_EQ(LocUnt("JR95", "KR95", beeper).at(12, 12).farbe, LocFarbe::Gruen);
    EXPECT_EQ(LocFarbeRgb(LocFarbe::Gruen), 0x00FF00u);
    EXPECT_EQ(LocFarbeRgb(LocFarbe::Cyan), 0x00FFFFu);
    EXPECT_EQ(LocFarbeRgb(LocFarbe::Magenta), 0xFF00FFu);
}

TEST(LocUnt, EdgesWrapExceptTheWest) {
    struct Case {
        const char* own;
        std::vector<Cell> cells;
    };
    const std::vector<Case> cases = {
        // east over R: the first character wraps to A
        {"RN78", {{12, 13, "RN88"}, {12, 14, "RN98"}, {12, 15, "AN08"}, {12, 24, "AN98"}}},
        // south over A: the second character wraps to R
        {"JA05", {{13, 12, "JA04"}, {17, 12, "JA00"}, {18, 12, "JR09"}, {24, 12, "JR03"}}},
        // north over R in the western column moves the first character on too
        // (IR79 -> JA70), and the rows are drawn from that top-left cell going
        // south without touching it again: the whole window, centre included,
        // shows the fields one letter east of the own square
        {"JR95", {{0, 0, "JA77"}, {7, 0, "JA70"}, {8, 0, "JR79"}, {12, 0, "JR75"}}},
        {"JR95", {{12, 12, "KR95"}, {7, 12, "KA90"}, {8, 12, "KR99"}}},
        // the west walk itself crosses a first-letter edge without stopping
        {"BN22", {{12, 0, "AN02"}, {12, 2, "AN22"}, {12, 9, "AN92"}, {12, 10, "BN02"}}},
    };
    for (const auto& c : cases) {
        test::CountingBeeper beeper;
        const LocFenster w = LocUnt(c.own, "", beeper);
        SCOPED_TRACE(c.own);
        EXPECT_EQ(beeper.beeps, 0);
        EXPECT_TRUE(w.gezeichnet);
        expectCells(w, c.cells);
    }
}

TEST(LocUnt, WestEdgeBeepsAndStops) {
    struct Case {
        const char* own;
        int lastCol; // the westernmost column written in the centre row
    };
    const std::vector<Case> cases = {
        {"AA05", 12}, // the very first step west passes A
        {"AA55", 7},  // AA45..AA05 in columns 11..7
        {"BN02", 2},  // AN92..AN02 in columns 10..2
        {"BN12", 1},  // one column short of the edge; BN22 reaches it
    };
    for (const auto& c : cases) {
        test::CountingBeeper beeper;
        const LocFenster w = LocUnt(c.own, "AA45,AN02", beeper);
        SCOPED_TRACE(c.own);
        EXPECT_EQ(beeper.beeps, 1);
        EXPECT_FALSE(w.gezeichnet);
        EXPECT_EQ(w.at(12, 12).farbe, LocFarbe::Magenta);
        EXPECT_FALSE(w.at(12, c.lastCol).text.empty());
        EXPECT_TRUE(w.at(12, c.lastCol - 1).text.empty());
        // nothing else was written, nothing coloured
        int written = 0;
        for (const auto& row : w.zelle)
            for (const auto& cell : row)
                written += cell.text.empty() ? 0 : 1;
        EXPECT_EQ(written, 1 + (12 - c.lastCol));
        EXPECT_EQ(countColoured(w, LocFarbe::Cyan), 0);
    }
    test::CountingBeeper beeper;
    const LocFenster w = LocUnt("AA55", "", beeper);
    EXPECT_EQ(w.at(12, 7).text, "AA05");
    EXPECT_EQ(w.at(12, 11).text, "AA45");
}

TEST(LocUnt, ShortLocatorGivesAnEmptyWindow) {
    test::CountingBeeper beeper;
    const LocFenster w = LocUnt("JN7", "JN7", beeper);
    EXPECT_EQ(beeper.beeps, 0);
    for (const auto& row : w.zelle)
        for (const auto& cell : row)
            EXPECT_TRUE(cell.text.empty());
}
