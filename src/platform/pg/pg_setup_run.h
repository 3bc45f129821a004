#pragma once

// Running the server's own programs for its setup, and rewriting its
// configuration files, as the user who owns the server.

#include <filesystem>
#include <string>
#include <vector>

namespace orv {

struct CommandRun {
    int status = -1;    // the exit status; -1 when it could not run or was killed
    std::string output; // standard output and error together
};

// Runs `argv` with `input` on its standard input, from the root folder. With
// `asUser` and when we are root, through `runuser -u USER --`. Waits for it.
CommandRun runCommand(const std::vector<std::string>& argv, const std::string& asUser = {},
                      const std::string& input = {});

// The name of the user who owns `path`; empty when it cannot be told.
std::string ownerName(const std::filesystem::path& path);

// Whether we may drive a server owned by `owner`: as root, or as that user.
bool mayDriveServerOf(const std::string& owner);

// Replaces a file's text whole (never half-written), keeping its owner and
// mode, as the server reads it under its own user. Throws
// fileio::FileError.
void rewriteConfigFile(const std::filesystem::path& path, const std::string& text);

} // namespace orv
