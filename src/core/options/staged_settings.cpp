#include "core/options/staged_settings.h"

#include "core/util/file_io.h"

namespace orv::options {

StagedSettings::StagedSettings(std::filesystem::path settingsFile)
    : target_(std::move(settingsFile)) {
    copy_ = target_;
    copy_ += ".options";
    std::error_code ec;
    const std::string content =
        std::filesystem::exists(target_, ec) ? fileio::readAll(target_) : std::string();
    fileio::writeAtomic(copy_, content);
    staged_ = std::make_unique<Settings>(IniFile(copy_));
}

StagedSettings::~StagedSettings() {
    if (!committed_) {
        std::error_code ec;
        std::filesystem::remove(copy_, ec);
    }
}

void StagedSettings::commit() {
    std::error_code ec;
    std::filesystem::rename(copy_, target_, ec);
    if (ec)
        throw fileio::FileError(target_.string() + ": " + ec.message());
    committed_ = true;
}

} // namespace orv::options
