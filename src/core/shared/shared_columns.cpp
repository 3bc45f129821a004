#include "core/shared/shared_columns.h"

#include <vector>

#include "core/logstore/schema.h"

namespace orv::shared_detail {

namespace {
const std::vector<std::string>& names() {
    static const std::vector<std::string> n = [] {
        std::vector<std::string> v;
        for (const auto& f : bandTableFields())
            v.push_back(f.Name);
        v.emplace_back("FreqHz");
        return v;
    }();
    return n;
}
} // namespace

std::string qsoColumns(const std::string& prefix) {
    std::string s;
    for (const auto& n : names())
        s += (s.empty() ? "" : ", ") + prefix + n;
    return s;
}

const std::string& qsoColumns() {
    static const std::string s = qsoColumns("");
    return s;
}

std::string qsoAssignments(int first) {
    std::string s;
    int i = first;
    for (const auto& n : names())
        s += (s.empty() ? "" : ", ") + n + " = ?" + std::to_string(i++);
    return s;
}

std::string qsoPlaceholders(int first) {
    std::string s;
    for (int i = 0; i < kQsoColumnCount; ++i)
        s += (s.empty() ? "?" : ", ?") + std::to_string(first + i);
    return s;
}

QsoRow readQso(const sql::Stmt& st, int c) {
    QsoRow r;
    r.call = st.text(c);
    r.locator = st.text(c + 1);
    r.qrg = st.int64(c + 2);
    r.datTime = DateTime::fromStorage(st.text(c + 3)).value_or(DateTime{});
    r.rstGeg = st.text(c + 4);
    r.qsoNr = st.int64(c + 5);
    r.rstErh = st.text(c + 6);
    r.qrb = st.int64(c + 7);
    r.qsl = st.int64(c + 8) != 0;
    r.notice = st.text(c + 9);
    r.mod = st.text(c + 10);
    r.dupe = st.int64(c + 11) != 0;
    r.name = st.text(c + 12);
    r.modRx = st.text(c + 13);
    r.ausBr = st.text(c + 14);
    r.errQso = st.int64(c + 15) != 0;
    r.opCall = st.text(c + 16);
    r.freqHz = st.int64(c + 17);
    return r;
}

void bindQso(sql::Stmt& st, int i, const QsoRow& r) {
    st.bind(i, r.call)
        .bind(i + 1, r.locator)
        .bind(i + 2, r.qrg)
        .bind(i + 3, r.datTime.toStorage())
        .bind(i + 4, r.rstGeg)
        .bind(i + 5, r.qsoNr)
        .bind(i + 6, r.rstErh)
        .bind(i + 7, r.qrb)
        .bind(i + 8, r.qsl ? 1 : 0)
        .bind(i + 9, r.notice)
        .bind(i + 10, r.mod)
        .bind(i + 11, r.dupe ? 1 : 0)
        .bind(i + 12, r.name)
        .bind(i + 13, r.modRx)
        .bind(i + 14, r.ausBr)
        .bind(i + 15, r.errQso ? 1 : 0)
        .bind(i + 16, r.opCall)
        .bind(i + 17, r.freqHz);
}

} // namespace orv::shared_detail
