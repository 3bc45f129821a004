#pragma once

#include <filesystem>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace orv::fileio {

class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads a whole file; throws FileError when it cannot.
std::string readAll(const std::filesystem::path& path);

// Writes a file so that it is either the old one or the whole new one: the
// content goes to a temporary file beside it, is flushed to disk, and then
// renamed over the target. On any failure the temporary file is removed, the
// target stays as it was, and FileError is thrown.
void writeAtomic(const std::filesystem::path& path, const std::string& content);
void writeAtomic(const std::filesystem::path& path,
                 const std::function<void(std::ostream&)>& writer);

} // namespace orv::fileio
