#include "core/logstore/schema.h"

#include <string>

#include "core/logstore/bands.h"
#include "core/util/sqlite.h"

namespace orv {
namespace {

std::string rangeCheck(const std::string& col, long long lo, long long hi) {
    return " CHECK(" + col + " IS NULL OR (typeof(" + col + ")='integer' AND " + col + " BETWEEN " +
           std::to_string(lo) + " AND " + std::to_string(hi) + "))";
}

FieldDesc text(std::string name, std::int16_t size, bool indexed) {
    return FieldDesc{std::move(name), FieldType::Text, size, indexed, false};
}
FieldDesc of(std::string name, FieldType type, bool indexed) {
    return FieldDesc{std::move(name), type, 0, indexed, false};
}

} // namespace

std::string columnDefinition(const FieldDesc& f) {
    const std::string col = sql::quoteIdent(f.Name);
    switch (f.Type) {
    case FieldType::Text:
        return col + " TEXT(" + std::to_string(f.Size) +
               ") NOT NULL DEFAULT '' COLLATE NOCASE CHECK(length(" + col +
               ") <= " + std::to_string(f.Size) + ")";
    case FieldType::Memo:
        return col + " MEMO NOT NULL DEFAULT '' COLLATE NOCASE";
    case FieldType::Boolean:
        return col + " BOOLEAN NOT NULL DEFAULT 0 CHECK(" + col + " IN (0, 1))";
    case FieldType::Byte:
        return col + " TINYINT" + rangeCheck(col, 0, 255);
    case FieldType::Integer:
        return col + " SMALLINT" + rangeCheck(col, -32768, 32767);
    case FieldType::Long:
        return col + " INTEGER" + rangeCheck(col, -2147483648LL, 2147483647LL);
    case FieldType::Currency:
        return col + " CURRENCY";
    case FieldType::Single:
        return col + " FLOAT";
    case FieldType::Double:
        return col + " DOUBLE";
    case FieldType::Date:
        return col + " DATETIME";
    }
    return col;
}

std::string indexName(std::string_view table, std::string_view field) {
    return std::string(table) + "_" + std::string(field) + "Index";
}

bool MakeLogTable(sql::Db& db, std::string_view tableName, const std::vector<FieldDesc>& fields) {
    if (db.tableExists(tableName))
        return false;
    sql::Transaction tx(db);
    std::string ddl = "CREATE TABLE " + sql::quoteIdent(tableName) + " (";
    for (std::size_t i = 0; i < fields.size(); ++i)
        ddl += (i ? ", " : "") + columnDefinition(fields[i]);
    ddl += ")";
    db.exec(ddl);
    for (const auto& f : fields) {
        if (!f.Indexed)
            continue;
        db.exec(std::string(f.Primary ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
                sql::quoteIdent(indexName(tableName, f.Name)) + " ON " +
                sql::quoteIdent(tableName) + " (" + sql::quoteIdent(f.Name) + ")");
    }
    tx.commit();
    return true;
}

bool MakeLogTable(const std::filesystem::path& path, std::string_view tableName,
                  const std::vector<FieldDesc>& fields) {
    sql::Db db(path.string());
    return MakeLogTable(db, tableName, fields);
}

bool FieldExists(sql::Db& db, std::string_view table, std::string_view field) {
    auto st = db.prepare("SELECT 1 FROM pragma_table_info(?1) WHERE name = ?2 COLLATE NOCASE");
    st.bind(1, table).bind(2, field);
    return st.step();
}

bool FieldExists(const std::filesystem::path& path, std::string_view table,
                 std::string_view field) {
    sql::Db db(path.string(), sql::Db::Mode::ReadOnly);
    return FieldExists(db, table, field);
}

const std::vector<FieldDesc>& bandTableFields() {
    static const std::vector<FieldDesc> fields{
        text("Call", 15, true),
        text("Locator", 6, true),
        of("QRG", FieldType::Long, true),
        of("DatTime", FieldType::Date, true),
        text("RSTgeg", 4, true),
        of("QSONr", FieldType::Long, true),
        text("RSTerh", 8, true),
        of("QRB", FieldType::Long, true),
        of("QSL", FieldType::Boolean, true),
        text("Notice", 100, false),
        text("Mod", 5, true),
        of("Dupe", FieldType::Boolean, false),
        text("Name", 100, false),
        text("ModRX", 5, true),
        text("AusBr", 3, true),
        of("ErrQSO", FieldType::Boolean, true),
        text("OPCall", 15, true),
    };
    return fields;
}

const std::vector<FieldDesc>& myDataFields() {
    static const std::vector<FieldDesc> fields = [] {
        std::vector<FieldDesc> f{text("MyCall", 15, false), text("MyLocator", 6, false)};
        for (int i = 0; i < kBandCount; ++i) {
            f.push_back(of(myDataField("ODX", i), FieldType::Long, false));
            f.push_back(of(myDataField("PGesamt", i), FieldType::Long, false));
            f.push_back(of(myDataField("ODXNr", i), FieldType::Long, false));
            f.push_back(of(myDataField("Zaehl", i), FieldType::Integer, false));
        }
        f.push_back(text("ContName", 255, false));
        return f;
    }();
    return fields;
}

void NewQbLogBD(sql::Db& db) {
    for (const auto& b : kBands)
        MakeLogTable(db, b.table, bandTableFields());
    MakeLogTable(db, "MyData", myDataFields());
}

void NewQbLogBD(const std::filesystem::path& path) {
    sql::Db db(path.string());
    NewQbLogBD(db);
}

} // namespace orv
