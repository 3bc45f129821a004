// The map of a band of 20,000 QSOs, painted offscreen at 1200 x 900:
//  - a full redraw (background with coastlines and grid, then the band),
//    the first draw of a new scene, and the background alone, which the
//    window keeps as a picture;
//  - the band layer alone, drawn over that picture after a change;
//  - the baseline: the image cleared and 20,000 squares drawn in one call;
//  - the update after a commit: the snapshot takes the QSO and its dot and
//    square are painted onto the kept picture, as the window does.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <chrono>
#include <string>
#include <vector>

#include "core/capture/band_state.h"
#include "core/i18n/texts.h"
#include "core/map/map_band.h"
#include "scene/coastlines.h"
#include "scene/map_scene.h"

using namespace orv;
using Clock_ = std::chrono::steady_clock;

namespace {

constexpr int kRows = 20000;

// Distinct calls and locators spread over Europe, as bench_ui fills its log.
BandState fullBand() {
    std::vector<QsoRow> rows;
    for (int i = 1; i <= kRows; ++i) {
        QsoRow q;
        q.call = "K" + std::to_string(i) + "AB";
        q.locator = "JO00AA";
        q.locator[0] = static_cast<char>('I' + i % 3);
        q.locator[1] = static_cast<char>('M' + i % 4);
        q.locator[2] = static_cast<char>('0' + i % 10);
        q.locator[3] = static_cast<char>('0' + (i / 10) % 10);
        q.locator[4] = static_cast<char>('A' + i % 24);
        q.locator[5] = static_cast<char>('A' + (i / 24) % 24);
        q.qsoNr = i;
        q.qrb = 100 + i % 900;
        q.datTime = DateTime{2026, 5, 2, 10, 0, 0};
        rows.push_back(std::move(q));
    }
    BandState s;
    s.load(1, std::move(rows), BandTotals{500LL * kRows, 999, 1}, "JN78DF", false);
    return s;
}

struct Scene {
    Texts texts;
    BandState state = fullBand();
    scene::MapScene scene{LocKoordinaten("JN78DF"), texts};
    QImage image{1200, 900, QImage::Format_ARGB32_Premultiplied};
    Scene() {
        scene.setBand(map::mapBand(state));
        scene.setCoastlines(scene::loadCoastlines());
        scene.fitBand(QSizeF(1200, 900));
    }
};

Scene& theScene() {
    static Scene s;
    return s;
}

template <class Paint> void measure(benchmark::State& state, Paint paint) {
    Scene& s = theScene();
    for (auto _ : state) {
        const auto t0 = Clock_::now();
        paint(s);
        state.SetIterationTime(std::chrono::duration<double>(Clock_::now() - t0).count());
    }
    state.counters["qsos"] = static_cast<double>(s.scene.band().qsos.size());
    state.counters["coast_lines"] = s.scene.hasCoastlines() ? 1 : 0;
}

void BM_MapFullRedraw(benchmark::State& state) {
    measure(state, [](Scene& s) {
        QPainter p(&s.image);
        p.setRenderHint(QPainter::Antialiasing);
        s.scene.paint(p);
    });
}

// The first draw of a new scene: the squares' outlines and the grid's list
// are made then and kept for the redraws above.
void BM_MapFirstDraw(benchmark::State& state) {
    Scene& s = theScene();
    const auto coast = scene::loadCoastlines();
    for (auto _ : state) {
        state.PauseTiming();
        scene::MapScene fresh(LocKoordinaten("JN78DF"), s.texts);
        fresh.setBand(map::mapBand(s.state));
        fresh.setCoastlines(coast);
        fresh.fitBand(QSizeF(1200, 900));
        state.ResumeTiming();
        const auto t0 = Clock_::now();
        QPainter p(&s.image);
        p.setRenderHint(QPainter::Antialiasing);
        fresh.paint(p);
        state.SetIterationTime(std::chrono::duration<double>(Clock_::now() - t0).count());
    }
}

void BM_MapBackground(benchmark::State& state) {
    measure(state, [](Scene& s) {
        QPainter p(&s.image);
        p.setRenderHint(QPainter::Antialiasing);
        s.scene.paintBackground(p);
    });
}

void BM_MapBandLayer(benchmark::State& state) {
    measure(state, [](Scene& s) {
        QPainter p(&s.image);
        p.setRenderHint(QPainter::Antialiasing);
        s.scene.paintBand(p);
    });
}

// The baseline: the image cleared and 20,000 ready squares of 4 pixels
// drawn with one call, no projection or look-up.
void BM_BaselineFillAndRects(benchmark::State& state) {
    std::vector<QRect> rects;
    for (int i = 0; i < kRows; ++i)
        rects.emplace_back((i * 37) % 1196, (i * 53) % 896, 4, 4);
    measure(state, [&rects](Scene& s) {
        QPainter p(&s.image);
        p.fillRect(s.image.rect(), Qt::white);
        p.setBrush(Qt::blue);
        p.drawRects(rects.data(), static_cast<int>(rects.size()));
    });
}

// One commit: the new row's map entry, the snapshot takes it, and its dot
// and square are painted onto the kept picture.
void BM_MapCommitUpdate(benchmark::State& state) {
    int n = 0;
    measure(state, [&n](Scene& s) {
        GridRow row;
        row.qso.call = "OK" + std::to_string(++n) + "XY";
        row.qso.locator = "JO70FD";
        row.qso.qsoNr = kRows + n;
        row.qso.qrb = 214;
        const auto q = map::mapQso(row, s.state.rows().size());
        s.scene.addQso(*q, n == 1 ? "JO70" : "");
        map::MapBand one;
        one.qsos.push_back(*q);
        scene::MapScene single(s.scene.projection().centre(), s.texts);
        single.setBand(std::move(one));
        single.setView(s.scene.size(), s.scene.toMap({600, 450}), s.scene.kmPerPixel());
        QPainter p(&s.image);
        p.setRenderHint(QPainter::Antialiasing);
        single.paintBand(p);
    });
}

} // namespace

BENCHMARK(BM_MapFullRedraw)->UseManualTime()->Iterations(60)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapFirstDraw)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapBackground)->UseManualTime()->Iterations(60)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapBandLayer)->UseManualTime()->Iterations(60)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BaselineFillAndRects)->UseManualTime()->Iterations(60)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapCommitUpdate)->UseManualTime()->Iterations(500)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
