#pragma once

// A call database with a few rows, made once per process and copied for
// each input, so that every input meets the same file.

#include <filesystem>

#include "core/reference/call_db.h"
#include "fuzz_support.h"

namespace orv::fuzz {

inline const std::filesystem::path& callDbTemplate() {
    static const std::filesystem::path dir = [] {
        const auto d = workDir() / "calldb-template";
        std::filesystem::create_directories(d);
        CallDbStore store(d / "QBDat.sqlite");
        CallRecord a;
        a.Call = "OE1ABC";
        a.Locator = "JN88EF";
        a.counters[1] = 3;
        a.LastDate = DateTime{2026, 5, 2, 12, 0, 0};
        (void)store.add(a);
        CallRecord b;
        b.Call = "DL1XYZ";
        (void)store.add(b);
        return d;
    }();
    return dir;
}

// A fresh copy of the template in `dir`; returns the database's path.
inline std::filesystem::path freshCallDb(const std::filesystem::path& dir) {
    std::filesystem::remove_all(dir);
    std::filesystem::copy(callDbTemplate(), dir, std::filesystem::copy_options::recursive);
    return dir / "QBDat.sqlite";
}

} // namespace orv::fuzz
