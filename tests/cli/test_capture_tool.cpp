#include <gtest/gtest.h>

#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "support/text_output.h"

using namespace orv;

namespace {} // namespace

// A QSO's life on the command line: logged, refused as a duplicate, listed,
// corrected, deleted, restored, and the band emptied.
TEST(CaptureTool, AddListCorrectDeleteRestoreClear) {
    test::TempDir home;
    auto tool = [&](std::vector<std::string> args) { return test::runToolAt(home.path(), args); };
    ASSERT_EQ(test::newLogAt(home.path(), "Test", "Test"), 0);

    auto add = tool({"add", "Test", "--band", "144", "--call", "dl1xyz", "--rst", "59", "--rcvd",
                     "59001", "--locator", "jn88ef", "--date", "2026-05-02", "--time", "12:00"});
    ASSERT_EQ(add.status, 0) << add.err;
    EXPECT_EQ(add.out, "DL1XYZ\tJN88EF\t59\t001\t59001\t155\t2026-05-02\t12:00\t144\tSSB\tSSB\tNo"
                       "\t\t89°\t\t\tFalse\t\n");

    for (const char* form : {"DL1XYZ", "dl1xyz ", " Dl1xYz"}) {
        auto dup = tool({"add", "Test", "--band", "144", "--call", form, "--rst", "59", "--rcvd",
                         "59002", "--locator", "JO62QM"});
        EXPECT_EQ(dup.status, 3) << form;
        EXPECT_NE(dup.err.find("!!DOPPELVERBINDUNG!!"), std::string::npos);
    }

    auto bad = tool({"add", "Test", "--band", "144", "--call", "DL2XYZ", "--rst", "59", "--rcvd",
                     "59001", "--locator", "JN88EZ"});
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.err, "Ungültiger Locator\n");
    EXPECT_EQ(tool({"add", "Test", "--band", "145", "--call", "DL2XYZ", "--rst", "59", "--rcvd",
                    "59001", "--locator", "JN88EF"})
                  .status,
              2);

    ASSERT_EQ(tool({"add", "Test", "--band", "144", "--call", "OE3XYZ", "--rst", "599", "--rcvd",
                    "599002", "--locator", "JO62QM", "--mode", "CW"})
                  .status,
              0);
    auto list = tool({"list", "Test", "--band", "144"});
    ASSERT_EQ(list.status, 0);
    auto l = test::splitLines(list.out);
    ASSERT_EQ(l.size(), 3u);
    EXPECT_EQ(l[2].rfind("# lastnr=2 score=", 0), 0u) << l[2];
    EXPECT_NE(l[2].find("odxnr=2 squares=2 deleted=0"), std::string::npos) << l[2];

    // A new locator gives a new distance; the ODX falls back to QSO 1.
    auto corr = tool({"correct", "Test", "--band", "144", "--nr", "2", "--locator", "JN78DG"});
    ASSERT_EQ(corr.status, 0) << corr.err;
    l = test::splitLines(tool({"list", "Test", "--band", "144"}).out);
    EXPECT_EQ(l[2], "# lastnr=2 score=160 kmperqso=80 odx=155 odxnr=1 squares=2 deleted=0");

    ASSERT_EQ(tool({"delete", "Test", "--band", "144", "--nr", "1"}).status, 0);
    l = test::splitLines(tool({"list", "Test", "--band", "144"}).out);
    EXPECT_NE(l[0].find("\tTrue\t"), std::string::npos);
    EXPECT_EQ(l[2], "# lastnr=2 score=5 kmperqso=5 odx=5 odxnr=2 squares=1 deleted=1");
    ASSERT_EQ(tool({"restore", "Test", "--band", "144", "--nr", "1"}).status, 0);
    EXPECT_EQ(test::splitLines(tool({"list", "Test", "--band", "144"}).out)[2],
              "# lastnr=2 score=160 kmperqso=80 odx=155 odxnr=1 squares=2 deleted=0");

    EXPECT_EQ(tool({"clear-band", "Test", "--band", "144"}).status, 2);
    ASSERT_EQ(tool({"clear-band", "Test", "--band", "144", "--yes"}).status, 0);
    EXPECT_EQ(tool({"list", "Test", "--band", "144"}).out,
              "# lastnr=0 score=0 kmperqso=0 odx=0 odxnr=0 squares=0 deleted=0\n");
    EXPECT_EQ(tool({"list", "Nope", "--band", "144"}).status, 2);
}
