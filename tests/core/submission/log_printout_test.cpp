#include <gtest/gtest.h>

#include "support/text_output.h"

#include <cstdio>
#include <memory>

#include "core/i18n/texts.h"
#include "core/submission/evaluation.h"
#include "core/submission/log_printout.h"
#include "core/util/pdf_writer.h"
#include "submission_support.h"

namespace orv::test {
namespace {

constexpr int k144 = 1;

std::size_t count(const std::string& s, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t i = s.find(what); i != std::string::npos; i = s.find(what, i + 1))
        ++n;
    return n;
}

TEST(LogPrintout, PdfHoldsEveryQsoThePageNumbersAndTheSummary) {
    TempDir dir;
    ContestLog log = makeLog(dir.path(), {1, 2, 1, 1, 1, 1, 1, 1, 1, 1});
    std::vector<QsoRow> rows;
    // Enough rows for several pages, one deleted and one with a German name.
    for (int i = 1; i <= 130; ++i) {
        QsoRow q = qso(i, "DL" + std::to_string(i) + "XYZ", i % 2 ? "JO62QM" : "JN58TD", 300 + i);
        if (i == 7)
            q.name = "Jürgen";
        rows.push_back(i == 9 ? deleted(q) : q);
    }
    addRows(log, k144, rows);
    const Evaluation ev = evaluate(log, k144, &realCountries());
    Texts texts;
    const print::Document doc = layoutLogPrintout(ev, texts);
    ASSERT_GE(doc.pages.size(), 3u);
    const auto pdf = dir / "Test-144.pdf";
    writeFile(pdf, print::writePdf(doc));

    const std::string t = test::pdfText(pdf);
    ASSERT_FALSE(t.empty()) << "pdftotext read nothing";
    for (const QsoRow& q : rows)
        EXPECT_EQ(count(t, " " + q.call + " "), 1u) << q.call;
    EXPECT_NE(t.find("Jürgen"), std::string::npos);
    // Header on every page: contest, call, locator, band.
    const std::size_t pages = doc.pages.size();
    EXPECT_EQ(count(t, "OE1ABC"), pages);
    EXPECT_EQ(count(t, "JN78DF"), pages);
    EXPECT_EQ(count(t, "Test Contest"), pages);
    EXPECT_EQ(count(t, "144 MHz"), pages);
    EXPECT_NE(t.find("Seite 1 von " + std::to_string(pages)), std::string::npos);
    EXPECT_NE(t.find("Seite " + std::to_string(pages) + " von " + std::to_string(pages)),
              std::string::npos);
    // The summary's totals are the evaluation's.
    // The line of the summary that starts with the label ends with the value.
    auto figure = [&](const std::string& label, std::int64_t v) {
        const std::size_t at = t.find(label, t.find("Zusammenfassung"));
        if (at == std::string::npos)
            return std::string("no ") + label;
        std::string line = t.substr(at, t.find('\n', at) - at);
        line.erase(line.find_last_not_of(' ') + 1);
        return line.substr(line.find_last_of(' ') + 1) == std::to_string(v) ? std::string("ok")
                                                                            : line;
    };
    EXPECT_EQ(ev.qsos, 129);
    EXPECT_EQ(figure("QSOs:", ev.qsos), "ok");
    EXPECT_EQ(figure("Score:", ev.points), "ok");
    EXPECT_EQ(figure("km/QSO:", ev.kmPerQso), "ok");
    EXPECT_EQ(figure("ODX:", ev.odx), "ok");
    EXPECT_EQ(figure("Gelöschte QSOs:", ev.deleted), "ok");
    EXPECT_EQ(figure("Multiplikator:", 2), "ok");
    EXPECT_EQ(figure("Länder:", ev.countryCount()), "ok");
    EXPECT_EQ(ev.deleted, 1);
}

TEST(LogPrintout, EmptyBandGivesAHeaderPageAndTheSummary) {
    TempDir dir;
    ContestLog log = makeLog(dir.path());
    const Evaluation ev = evaluate(log, k144, nullptr);
    Texts texts;
    const print::Document doc = layoutLogPrintout(ev, texts);
    ASSERT_EQ(doc.pages.size(), 2u);
    const auto pdf = dir / "empty.pdf";
    writeFile(pdf, print::writePdf(doc));
    const std::string t = test::pdfText(pdf);
    EXPECT_NE(t.find("Seite 2 von 2"), std::string::npos);
    EXPECT_NE(t.find("Zusammenfassung"), std::string::npos);
}

} // namespace
} // namespace orv::test
