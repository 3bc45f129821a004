#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "core/app/shipped_data.h"

namespace orv {

// The data folder and the files and folders the program keeps in it.
struct AppPaths {
    std::filesystem::path appPath;

    std::filesystem::path iniPath() const { return appPath / "OrvantaContest.INI"; }
    std::filesystem::path qbDatIniPath() const { return appPath / "QBDat.ini"; }
    std::filesystem::path logsPath() const { return appPath / "Logs"; }
    std::filesystem::path audioPath() const { return appPath / "Audio"; }
    std::filesystem::path cwAudioPath() const { return appPath / "CWAudio"; }
    std::filesystem::path languagePath() const { return appPath / "Language"; }
    std::filesystem::path stationLogPath() const { return appPath / "QjLog"; }
    std::filesystem::path callDbPath() const { return appPath / "QBDat.sqlite"; }
    std::filesystem::path countryDbPath() const { return appPath / "QBCountry.sqlite"; }
    std::filesystem::path logFile(const std::string& name) const {
        return logsPath() / (name + ".sqlite");
    }
};

// Environment look-up, replaceable in tests.
using EnvLookup = std::function<std::optional<std::string>(const char*)>;
std::optional<std::string> systemEnv(const char* name);

// The data folder: --home DIR, else $ORVANTA_HOME, else
// $XDG_DATA_HOME/OrvantaContest, else ~/.local/share/OrvantaContest.
std::filesystem::path resolveDataFolder(const std::optional<std::string>& home,
                                        const EnvLookup& env = systemEnv);

// A directory entry whose name equals `name` compared case-blind, if any.
std::optional<std::filesystem::path> findCaseBlind(const std::filesystem::path& dir,
                                                   const std::string& name);

// Creates the data folder and its sub-folders where missing, and restores the
// settings file and the call database from their "_org" copies when the file
// itself is gone, and puts the shipped language files (from the shipped data
// folder `shipped`, see shipped_data.h) into Language/ where they are missing.
// Throws std::filesystem::filesystem_error when the folder cannot be made,
// fileio::FileError when a language file cannot be written.
AppPaths
prepareDataFolder(const std::filesystem::path& folder,
                  const std::optional<std::filesystem::path>& shipped = shippedDataFolder());

} // namespace orv
