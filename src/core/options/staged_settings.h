#pragma once

#include <filesystem>
#include <memory>

#include "core/settings/settings.h"

namespace orv::options {

// The settings as the options dialog saves them: every page writes into a
// copy beside the settings file, and the copy replaces the file in one
// rename. A save that fails part-way leaves the settings file as it was.
class StagedSettings {
public:
    // Copies the settings file (an empty one when there is none); throws
    // fileio::FileError when the copy cannot be written.
    explicit StagedSettings(std::filesystem::path settingsFile);
    // Removes the copy unless it was committed.
    ~StagedSettings();
    StagedSettings(const StagedSettings&) = delete;
    StagedSettings& operator=(const StagedSettings&) = delete;

    Settings& settings() { return *staged_; }
    // Puts the copy in place of the settings file; throws fileio::FileError.
    void commit();

private:
    std::filesystem::path target_;
    std::filesystem::path copy_;
    std::unique_ptr<Settings> staged_;
    bool committed_ = false;
};

} // namespace orv::options
