#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orv {

// The password of the upload account: in the desktop's keyring (the Secret
// Service, through libsecret) when one answers, otherwise in a file of its
// own that only the user may read (mode 0600). Never in the settings file.
class PasswordStore {
public:
    enum class Place { Keyring, File };

    // `file` is the fallback file; `useKeyring` false keeps to the file.
    explicit PasswordStore(std::filesystem::path file, bool useKeyring = true)
        : file_(std::move(file)), useKeyring_(useKeyring) {}

    std::optional<std::string> load(const std::string& host, const std::string& user) const;
    // Where the password went; throws fileio::FileError when the file
    // cannot be written either.
    Place save(const std::string& host, const std::string& user, const std::string& password);
    void forget(const std::string& host, const std::string& user);

    // The fallback file in a data folder.
    static std::filesystem::path fileIn(const std::filesystem::path& dataFolder) {
        return dataFolder / "Upload.pwd";
    }

private:
    std::filesystem::path file_;
    bool useKeyring_;
};

} // namespace orv
