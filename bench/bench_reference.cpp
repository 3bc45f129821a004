// Reference data: the live call search over 1,000,000 records against the
// flat-string scan it replaces, the start-up load of the call database, the
// CTY.DAT import and the country lookup.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "core/reference/call_db.h"
#include "core/reference/call_image.h"
#include "core/reference/call_image_file.h"
#include "core/reference/country_list.h"
#include "core/util/sqlite.h"

namespace fs = std::filesystem;
using namespace orv;

namespace {

constexpr std::size_t kRecords = 1'000'000;
constexpr std::size_t kScreenful = 20;
const fs::path kMasterScp = "/usr/share/hamradio-files/MASTER.SCP";
const fs::path kCtyDat = "/usr/share/hamradio-files/cty.dat";

fs::path workDir() {
    static const fs::path dir = [] {
        fs::path d =
            fs::temp_directory_path() / ("orv-bench-reference-" + std::to_string(::getpid()));
        fs::create_directories(d);
        return d;
    }();
    return dir;
}

// The real calls of MASTER.SCP, then generated ones of the same shape up to
// one million, each with a locator.
const std::vector<CallRecord>& records() {
    static const std::vector<CallRecord> all = [] {
        std::set<std::string> calls;
        std::ifstream in(kMasterScp);
        for (std::string l; std::getline(in, l);)
            if (!l.empty() && l[0] != '#')
                calls.insert(l);
        const char* prefixes[] = {"DL", "DK", "DJ", "DB", "DC", "DO",  "DG", "G",  "M",  "2E",
                                  "F",  "ON", "PA", "PD", "OK", "OM",  "SP", "SQ", "HA", "S5",
                                  "9A", "I",  "IK", "IZ", "OE", "HB9", "LA", "SM", "OH", "OZ",
                                  "EA", "EI", "YU", "LZ", "YO", "UR",  "LY", "YL", "ES", "E7"};
        std::mt19937 rng(1);
        while (calls.size() < kRecords) {
            std::string c = prefixes[rng() % std::size(prefixes)];
            c += static_cast<char>('0' + rng() % 10);
            const int suffix = 1 + static_cast<int>(rng() % 3);
            for (int i = 0; i < suffix; ++i)
                c += static_cast<char>('A' + rng() % 26);
            if (rng() % 10 == 0)
                c += "/P";
            calls.insert(c);
        }
        std::vector<CallRecord> out;
        out.reserve(calls.size());
        for (const auto& c : calls) {
            CallRecord r;
            r.Call = c;
            r.Locator = {static_cast<char>('A' + rng() % 18), static_cast<char>('A' + rng() % 18),
                         static_cast<char>('0' + rng() % 10), static_cast<char>('0' + rng() % 10),
                         static_cast<char>('A' + rng() % 24), static_cast<char>('A' + rng() % 24)};
            r.counters[1] = static_cast<std::int32_t>(rng() % 5);
            out.push_back(std::move(r));
        }
        std::shuffle(out.begin(), out.end(), rng);
        return out;
    }();
    return all;
}

const QBDatImage& image() {
    static const QBDatImage img = QBDatImage::fromRecords(records());
    return img;
}

// What an operator types: the beginning of a call one key at a time, or the
// part after the digit, from two characters on as the entry row searches.
const std::vector<std::string>& keyStrokes() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> out;
        std::mt19937 rng(2);
        const auto& recs = records();
        for (int i = 0; i < 200; ++i) {
            const std::string& c = recs[rng() % recs.size()].Call;
            const std::size_t from = i % 4 == 3 ? std::min<std::size_t>(c.size() - 1, 3) : 0;
            for (std::size_t len = 2; from + len <= c.size(); ++len)
                out.push_back(c.substr(from, len));
        }
        return out;
    }();
    return keys;
}

// QBDatCalls as the flat-string search had it: call, "¶", record number, "Þ".
const std::string& flatCalls() {
    static const std::string flat = [] {
        std::string s;
        const auto& img = image();
        s.reserve(img.size() * 24);
        for (std::uint32_t n = 1; n <= img.size(); ++n) {
            s += img.record(n).Call();
            s += "\xC2\xB6";
            s += std::to_string(n);
            s += "\xC3\x9E";
        }
        return s;
    }();
    return flat;
}

// The flat-string search: every hit of the text, kept when "¶" comes before
// "Þ" (a hit in a call, not in a number), the record's line for the first
// screenful, and a counter.
std::size_t flatScan(const std::string& flat, const std::string& part,
                     std::vector<std::string>& lines) {
    std::size_t found = 0, pos = 0;
    while ((pos = flat.find(part, pos)) != std::string::npos) {
        const auto para = flat.find("\xC2\xB6", pos);
        const auto thorn = flat.find("\xC3\x9E", pos);
        if (para < thorn) {
            const auto n =
                static_cast<std::uint32_t>(std::strtoul(flat.c_str() + para + 2, nullptr, 10));
            ++found;
            if (lines.size() < kScreenful)
                lines.push_back(image().WriteInList(n));
        }
        pos += 1;
    }
    return found;
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

// One key stroke: the hit count and the first screenful of list lines, by the
// index and by the flat scan, on the same text, side by side.
void BM_KeyStroke_IndexVsFlatScan(benchmark::State& state) {
    const auto& img = image();
    const auto& flat = flatCalls();
    const auto& keys = keyStrokes();
    std::vector<double> indexUs, scanUs;
    std::size_t k = 0, mismatches = 0;
    for (auto _ : state) {
        const std::string& part = keys[k++ % keys.size()];
        auto t0 = std::chrono::steady_clock::now();
        const auto r = img.search({part, "", kScreenful});
        std::vector<std::string> lines;
        for (auto n : r.records)
            lines.push_back(img.WriteInList(n));
        auto t1 = std::chrono::steady_clock::now();
        std::vector<std::string> scanLines;
        const std::size_t scanFound = flatScan(flat, part, scanLines);
        auto t2 = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(lines.data());
        benchmark::DoNotOptimize(scanLines.data());
        // A call holding the text twice is one record to the index and two
        // hits to the scan; the lists agree.
        if (scanFound < r.found || lines.empty() != scanLines.empty() ||
            (!lines.empty() && lines.front() != scanLines.front()))
            ++mismatches;
        indexUs.push_back(std::chrono::duration<double, std::micro>(t1 - t0).count());
        scanUs.push_back(std::chrono::duration<double, std::micro>(t2 - t1).count());
    }
    const double mi = median(indexUs), ms = median(scanUs);
    state.counters["index_median_us"] = mi;
    state.counters["scan_median_us"] = ms;
    state.counters["speedup"] = mi > 0 ? ms / mi : 0;
    state.counters["index_max_us"] = *std::max_element(indexUs.begin(), indexUs.end());
    state.counters["records"] = static_cast<double>(img.size());
    state.counters["mismatches"] = static_cast<double>(mismatches);
}
BENCHMARK(BM_KeyStroke_IndexVsFlatScan)->Iterations(600)->Unit(benchmark::kMillisecond);

// Index only, over every key stroke of the list, with a locator part too.
void BM_KeyStroke_CallAndLocator(benchmark::State& state) {
    const auto& img = image();
    const auto& keys = keyStrokes();
    const char* locs[] = {"JO", "JO3", "JO31", "IN", "KN0", "31"};
    std::vector<double> us;
    std::size_t k = 0;
    for (auto _ : state) {
        auto t0 = std::chrono::steady_clock::now();
        const auto r = img.search({keys[k % keys.size()], locs[k % std::size(locs)], kScreenful});
        for (auto n : r.records)
            benchmark::DoNotOptimize(img.WriteInList(n));
        us.push_back(
            std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - t0)
                .count());
        ++k;
    }
    state.counters["median_us"] = median(us);
}
BENCHMARK(BM_KeyStroke_CallAndLocator)->Iterations(2000)->Unit(benchmark::kMicrosecond);

const fs::path& callDbFile() {
    static const fs::path file = [] {
        fs::path p = workDir() / "QBDat.sqlite";
        CallDbStore store(p);
        store.db().exec("PRAGMA synchronous = OFF");
        sql::Transaction tx(store.db());
        auto st = store.db().prepare(
            "INSERT INTO OrvantaContestDat (Call, Locator, B6, B2, Bc70, Bc23, Bc13, Bc9, Bc6, "
            "Bc3, Bm12, Bm6, LastDate) VALUES (?1, ?2, 0, ?3, 0, 0, 0, 0, 0, 0, 0, 0, ?4)");
        for (const auto& r : records()) {
            st.bind(1, r.Call).bind(2, r.Locator).bind(3, r.counters[1]);
            st.bind(4, "2025-09-06 14:03:00").run();
            st.reset();
        }
        tx.commit();
        return p;
    }();
    return file;
}

// Start-up: every record from the file, sorted, both indexes built.
void BM_LoadCallDb_1M(benchmark::State& state) {
    const auto& file = callDbFile();
    std::size_t n = 0, records = 0, index = 0;
    // The indexes are built on a second thread, which the CPU column does not
    // see: the process's CPU time over all threads is reported as well.
    const std::clock_t c0 = std::clock();
    for (auto _ : state) {
        auto img = QBDatImage::load(file);
        n = img.size();
        index = img.indexBytes();
        records = img.memoryBytes() - index;
        benchmark::DoNotOptimize(img);
    }
    state.counters["records"] = static_cast<double>(n);
    state.counters["records_MiB"] = static_cast<double>(records) / 1048576.0;
    state.counters["index_MiB"] = static_cast<double>(index) / 1048576.0;
    state.counters["process_cpu_ms"] =
        (std::clock() - c0) * 1000.0 / CLOCKS_PER_SEC / static_cast<double>(state.iterations());
}
BENCHMARK(BM_LoadCallDb_1M)->Unit(benchmark::kMillisecond)->Iterations(3);

// Start-up with the image file beside the database: the stamp read from the
// database, the file mapped and checked, and the first key stroke answered
// (the only pages of the file read are those the search touches).
void BM_OpenCallImage_1M(benchmark::State& state) {
    const auto& file = callDbFile();
    const fs::path imageFile = callImagePath(file);
    if (!fs::exists(imageFile)) {
        const auto img = QBDatImage::load(file);
        CallImageFile::write(img, imageFile);
    }
    std::size_t n = 0, bytes = 0, found = 0;
    const std::clock_t c0 = std::clock();
    for (auto _ : state) {
        std::int64_t stamp = 0;
        {
            sql::Db db(file.string(), sql::Db::Mode::ReadOnly);
            stamp = callDbStamp(db).value_or(0);
        }
        const auto opened = CallImageFile::open(imageFile, stamp);
        if (!opened.image) {
            state.SkipWithError("the image file was not taken");
            return;
        }
        found = opened.image->search({"DL1A", "", 500}).found;
        n = opened.image->size();
        bytes = static_cast<std::size_t>(fs::file_size(imageFile));
    }
    state.counters["records"] = static_cast<double>(n);
    state.counters["found"] = static_cast<double>(found);
    state.counters["file_MiB"] = static_cast<double>(bytes) / 1048576.0;
    state.counters["process_cpu_ms"] =
        (std::clock() - c0) * 1000.0 / CLOCKS_PER_SEC / static_cast<double>(state.iterations());
}
BENCHMARK(BM_OpenCallImage_1M)->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_ImportCtyDat(benchmark::State& state) {
    const fs::path db = workDir() / "QBCountry.sqlite";
    for (auto _ : state) {
        auto r = importCountryFile(db, kCtyDat, CountryFormat::CtyDat);
        if (!r)
            state.SkipWithError("import refused");
    }
}
BENCHMARK(BM_ImportCtyDat)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_CountryLookup_100k(benchmark::State& state) {
    const fs::path db = workDir() / "QBCountry-lookup.sqlite";
    if (!importCountryFile(db, kCtyDat, CountryFormat::CtyDat)) {
        state.SkipWithError("import refused");
        return;
    }
    const auto list = CountryList::load(db);
    std::vector<std::string> calls;
    for (std::size_t i = 0; i < 100'000; ++i)
        calls.push_back(records()[i * 7 % records().size()].Call);
    for (auto _ : state) {
        std::size_t hits = 0;
        for (const auto& c : calls)
            hits += list.findRecNr(c).has_value();
        benchmark::DoNotOptimize(hits);
    }
}
BENCHMARK(BM_CountryLookup_100k)->Unit(benchmark::kMillisecond)->Iterations(10);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::error_code ec;
    fs::remove_all(workDir(), ec);
    return 0;
}
