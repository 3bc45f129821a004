#pragma once

#include <filesystem>
#include <string>

namespace orv::test {

// A fresh folder under the system's temporary folder, removed again when the
// object goes out of scope.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

void writeFile(const std::filesystem::path& p, const std::string& content);
std::string readFile(const std::filesystem::path& p);

// The root of the source tree, for test data files.
std::filesystem::path sourceDir();
// The folder of the built programs (orvanta-tool).
std::filesystem::path binaryDir();

} // namespace orv::test
