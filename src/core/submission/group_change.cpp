#include "core/submission/group_change.h"

#include <optional>
#include <vector>

#include "core/logstore/contest_log.h"
#include "core/submission/export_file.h"
#include "core/util/sqlite.h"
#include "core/util/text.h"

namespace orv {
namespace {

bool isTimeField(GroupField f) {
    return f == GroupField::Time || f == GroupField::AddTime || f == GroupField::SubTime;
}

// The options whose value comes from a list rather than the text box.
bool usesList(GroupField f) {
    return f == GroupField::RxMod || f == GroupField::TxMod || f == GroupField::Qsl ||
           f == GroupField::Prop || f == GroupField::OpCall;
}

const char* column(GroupField f) {
    switch (f) {
    case GroupField::RxMod:
        return "ModRX";
    case GroupField::TxMod:
        return "Mod";
    case GroupField::Qsl:
        return "QSL";
    case GroupField::Note:
        return "Notice";
    case GroupField::Name:
        return "Name";
    case GroupField::Prop:
        return "AusBr";
    case GroupField::OpCall:
        return "OPCall";
    default:
        return "DatTime";
    }
}

// The new text of a text field, or 0/1 for QSL.
std::string newText(GroupField f, const std::string& value) {
    switch (f) {
    case GroupField::RxMod:
    case GroupField::TxMod:
        return text::left(value, 5);
    case GroupField::Note:
    case GroupField::Name:
        return text::left(value, 100);
    case GroupField::Prop:
        return text::upper(text::left(value, 3));
    case GroupField::OpCall:
        return text::upper(text::left(value, 15));
    default:
        return value;
    }
}

DateTime newTime(GroupField f, const DateTime& stored, const DateTime& entered) {
    const std::int64_t span = entered.hour * 3600 + entered.minute * 60 + entered.second;
    switch (f) {
    case GroupField::AddTime:
        return stored.addSeconds(span);
    case GroupField::SubTime:
        return stored.addSeconds(-span);
    default:
        return DateTime{stored.year,  stored.month,   stored.day,
                        entered.hour, entered.minute, entered.second};
    }
}

} // namespace

Result<std::int64_t> applyGroupChange(ContestLog& log, int b, const GroupChange& change) {
    const std::string from = text::trim(change.from), to = text::trim(change.to);
    if (!text::isInteger(from))
        return refuse(225, "Text1", change.from);
    if (!text::isInteger(to) || text::leadingInt(from) > text::leadingInt(to))
        return refuse(225, "Text2", change.to);
    const std::string value = text::trim(change.value);
    const std::string valueField = usesList(change.field) ? "Combo1" : "Text3";
    std::optional<DateTime> entered;
    if (isTimeField(change.field)) {
        entered = value.empty() ? std::nullopt : parseCellTime(value);
        if (!entered)
            return refuse(14, valueField, change.value);
    } else if (value.empty()) {
        return refuse(225, valueField);
    }

    const std::string table = sql::quoteIdent(band(b).table);
    sql::Db& db = log.db();
    sql::Transaction tx(db);
    struct Target {
        RowId id;
        std::string datTime;
    };
    std::vector<Target> targets;
    {
        auto st = db.prepare("SELECT rowid, \"QSONr\", \"DatTime\" FROM " + table +
                             " WHERE \"QSONr\" BETWEEN ?1 AND ?2 ORDER BY \"QSONr\", rowid");
        st.bind(1, static_cast<std::int64_t>(text::leadingInt(from)));
        st.bind(2, static_cast<std::int64_t>(text::leadingInt(to)));
        std::optional<std::int64_t> lastNr;
        while (st.step()) {
            const std::int64_t nr = st.int64(1);
            if (lastNr == nr)
                continue; // the seek finds the first row of a number only
            lastNr = nr;
            targets.push_back(Target{st.int64(0), st.text(2)});
        }
    }
    auto update = db.prepare("UPDATE " + table + " SET " + sql::quoteIdent(column(change.field)) +
                             " = ?1 WHERE rowid = ?2");
    for (const Target& t : targets) {
        if (isTimeField(change.field)) {
            const DateTime stored = DateTime::fromStorage(t.datTime).value_or(DateTime{});
            update.bind(1, newTime(change.field, stored, *entered).toStorage());
        } else if (change.field == GroupField::Qsl) {
            update.bind(1, static_cast<std::int64_t>(value == "Yes" ? 1 : 0));
        } else {
            update.bind(1, newText(change.field, value));
        }
        update.bind(2, static_cast<std::int64_t>(t.id));
        update.run();
    }
    tx.commit();
    return static_cast<std::int64_t>(targets.size());
}

} // namespace orv
