#include "support/temp_dir.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace orv::test {

TempDir::TempDir() {
    std::string tmpl = (std::filesystem::temp_directory_path() / "orvanta-test-XXXXXX").string();
    if (!mkdtemp(tmpl.data()))
        throw std::runtime_error("mkdtemp failed");
    path_ = tmpl;
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

void writeFile(const std::filesystem::path& p, const std::string& content) {
    std::filesystem::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary);
    out << content;
    if (!out)
        throw std::runtime_error("cannot write " + p.string());
}

std::string readFile(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + p.string());
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

std::filesystem::path sourceDir() {
    const char* v = std::getenv("ORVANTA_SOURCE_DIR");
    return v ? v : ORVANTA_SOURCE_DIR_DEFAULT;
}

std::filesystem::path binaryDir() {
    const char* v = std::getenv("ORVANTA_BINARY_DIR");
    return v ? v : ORVANTA_BINARY_DIR_DEFAULT;
}

} // namespace orv::test
