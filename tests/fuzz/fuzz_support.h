#pragma once

// Helpers shared by the libFuzzer harnesses: a private folder for the files
// of one run, whole-file reads and writes, and the check that stops a run
// with a finding when a reader breaks one of its promises.

#include <signal.h>
#include <unistd.h>

#include <cerrno>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

namespace orv::fuzz {

// A folder of this process, on tmpfs when the machine has one: the readers
// under test write databases, and a disk would make each run slow.
inline const std::filesystem::path& workDir() {
    static const std::filesystem::path dir = [] {
        std::filesystem::path base = "/dev/shm";
        std::error_code ec;
        if (!std::filesystem::is_directory(base, ec))
            base = std::filesystem::temp_directory_path();
        // libFuzzer may end a run without static destructors: folders of
        // runs whose process is gone are removed here.
        for (const auto& e : std::filesystem::directory_iterator(base, ec)) {
            const std::string n = e.path().filename().string();
            if (n.starts_with("orvanta-fuzz-") &&
                ::kill(static_cast<pid_t>(std::atol(n.c_str() + 13)), 0) != 0 && errno == ESRCH)
                std::filesystem::remove_all(e.path(), ec);
        }
        auto d = base / ("orvanta-fuzz-" + std::to_string(::getpid()));
        std::filesystem::remove_all(d, ec);
        std::filesystem::create_directories(d);
        // The folder goes with the process when libFuzzer ends normally.
        static struct Cleanup {
            std::filesystem::path p;
            ~Cleanup() {
                std::error_code e;
                std::filesystem::remove_all(p, e);
            }
        } cleanup{d};
        return d;
    }();
    return dir;
}

// Read in one piece: the logs are large enough that a character-wise read
// would be most of a run's time.
inline std::string bytesOf(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary | std::ios::ate);
    if (!in)
        return {};
    std::string s(static_cast<std::size_t>(in.tellg()), '\0');
    in.seekg(0);
    in.read(s.data(), static_cast<std::streamsize>(s.size()));
    return s;
}

inline void writeBytes(const std::filesystem::path& p, std::string_view bytes) {
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Every file of a folder with its bytes, for the "nothing changed" checks
// of databases that keep journal files beside them. SQLite's "-shm" index
// is left out: readers write their marks into it.
inline std::string folderBytes(const std::filesystem::path& dir) {
    std::map<std::string, std::string> files;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(dir, ec))
        if (e.is_regular_file() && !e.path().string().ends_with("-shm"))
            files[e.path().filename().string()] = bytesOf(e.path());
    std::string all;
    for (const auto& [name, b] : files)
        all += name + ":" + std::to_string(b.size()) + ":" + b;
    return all;
}

[[noreturn]] inline void finding(const char* file, int line, const char* what) {
    std::fprintf(stderr, "\n*** fuzz finding at %s:%d: %s\n", file, line, what);
    std::abort();
}

} // namespace orv::fuzz

// A promise of the reader that this input broke: abort, so that libFuzzer
// keeps the input as a crash.
#define FUZZ_CHECK(cond, what)                                                                     \
    do {                                                                                           \
        if (!(cond))                                                                               \
            ::orv::fuzz::finding(__FILE__, __LINE__, what);                                        \
    } while (0)
