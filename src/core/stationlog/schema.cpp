#include "core/stationlog/schema.h"

#include "core/util/sqlite.h"

namespace orv {
namespace {

FieldDesc text(const char* name, std::int16_t size) {
    return FieldDesc{name, FieldType::Text, size, true, false};
}

} // namespace

const std::vector<FieldDesc>& qjLogFields() {
    static const std::vector<FieldDesc> fields{
        FieldDesc{"Nr", FieldType::Long, 0, true, true},
        FieldDesc{"DateTime", FieldType::Date, 0, true, false},
        text("Call", 15),
        text("RST_TX", 3),
        text("RST_RX", 3),
        text("Locator", 6),
        text("QRG_TX", 15),
        text("QRG_RX", 15),
        text("TXMod", 10),
        text("RXMod", 10),
        text("Prop", 10),
        text("QSL", 2),
        text("QSLManager", 15),
        text("Name", 30),
        text("MyCall", 15),
        text("MyLocator", 6),
        text("Power", 6),
        text("Antenne", 30),
        text("Note", 255),
        text("QSL_RX", 2),
    };
    return fields;
}

std::string* textField(StationQso& q, int field) {
    std::string* const fields[] = {&q.call,       &q.rstTx, &q.rstRx,  &q.locator,   &q.qrgTx,
                                   &q.qrgRx,      &q.txMod, &q.rxMod,  &q.prop,      &q.qsl,
                                   &q.qslManager, &q.name,  &q.myCall, &q.myLocator, &q.power,
                                   &q.antenne,    &q.note,  &q.qslRx};
    if (field < 2 || field >= kQjFieldCount)
        return nullptr;
    return fields[field - 2];
}

const std::string* textField(const StationQso& q, int field) {
    return textField(const_cast<StationQso&>(q), field);
}

void NewQjLogBD(sql::Db& db) {
    MakeLogTable(db, kQjLogTable, qjLogFields());
}

void NewQjLogBD(const std::filesystem::path& path) {
    sql::Db db(path.string());
    NewQjLogBD(db);
}

bool isStationLogSchema(sql::Db& db) {
    if (!db.tableExists(kQjLogTable))
        return false;
    for (const auto& f : qjLogFields())
        if (!FieldExists(db, kQjLogTable, f.Name))
            return false;
    return true;
}

} // namespace orv
