#include <gtest/gtest.h>

#include "core/util/sqlite.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(Sqlite, TransactionRollsBackUnlessCommitted) {
    test::TempDir dir;
    sql::Db db((dir / "t.sqlite").string());
    db.setDurable();
    db.exec("CREATE TABLE \"144MHz\" (Call TEXT, QRB INTEGER)");
    {
        sql::Transaction tx(db);
        db.prepare("INSERT INTO \"144MHz\" VALUES (?1, ?2)").bind(1, "DL1ABC").bind(2, 155).run();
    }
    {
        sql::Transaction tx(db);
        db.prepare("INSERT INTO \"144MHz\" VALUES (?1, ?2)").bind(1, "OE1XYZ").bind(2, 42).run();
        tx.commit();
    }
    sql::Db again((dir / "t.sqlite").string(), sql::Db::Mode::ReadOnly);
    auto st = again.prepare("SELECT Call, QRB FROM " + sql::quoteIdent("144MHz"));
    ASSERT_TRUE(st.step());
    EXPECT_EQ(st.text(0), "OE1XYZ");
    EXPECT_EQ(st.integer(1), 42);
    EXPECT_FALSE(st.step());
    EXPECT_TRUE(again.tableExists("144mhz"));
}

TEST(Sqlite, ErrorsCarryTheMessageAndNullReadsAsEmpty) {
    test::TempDir dir;
    sql::Db db((dir / "t.sqlite").string());
    EXPECT_THROW(db.exec("SELECT * FROM missing"), sql::Error);
    EXPECT_THROW(sql::Db((dir / "no" / "such.sqlite").string(), sql::Db::Mode::ReadWrite),
                 sql::Error);
    auto st = db.prepare("SELECT NULL");
    ASSERT_TRUE(st.step());
    EXPECT_TRUE(st.isNull(0));
    EXPECT_EQ(st.text(0), "");
    EXPECT_EQ(st.int64(0), 0);
}

TEST(Sqlite, BackupCopiesALiveDatabase) {
    test::TempDir dir;
    sql::Db db((dir / "live.sqlite").string());
    db.setDurable();
    db.exec("CREATE TABLE t (x); INSERT INTO t VALUES (1), (2), (3)");
    sql::backupTo(db, (dir / "copy.sqlite").string());
    sql::Db copy((dir / "copy.sqlite").string());
    auto st = copy.prepare("SELECT count(*) FROM t");
    ASSERT_TRUE(st.step());
    EXPECT_EQ(st.integer(0), 3);
}
