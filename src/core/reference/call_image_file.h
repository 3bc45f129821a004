#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

#include "core/reference/call_image.h"

// The image of the call database kept in a file beside it (`QBDat.image`),
// so that a start with a large database maps the records and the index into
// memory instead of reading and sorting the whole table. The file holds the
// image exactly as the search reads it, behind a header with the database's
// change stamp; a file whose stamp is not the database's is stale and never
// searched.
namespace orv {

// `QBDat.image` beside `QBDat.sqlite`.
std::filesystem::path callImagePath(const std::filesystem::path& dbPath);

class CallImageFile {
public:
    enum class Verdict {
        Ok,
        Missing, // no file
        Damaged, // not an image of this layout, cut short, or inconsistent
        Stale,   // built from another content of the database
    };
    struct Opened {
        std::shared_ptr<const QBDatImage> image; // set for Ok only
        Verdict verdict = Verdict::Missing;
    };

    // Maps the file and checks its header (magic, layout, size, checksum),
    // its index tables and then the stamp.
    static Opened open(const std::filesystem::path& file, std::int64_t stamp);
    // The same over bytes that `storage` keeps alive, aligned to 8 bytes;
    // without a stamp any stamp is taken.
    static Opened fromBytes(std::span<const std::uint8_t> bytes, std::optional<std::int64_t> stamp,
                            std::shared_ptr<const void> storage);

    // Writes the image, which must carry the stamp it was read with, to a
    // temporary file beside `file`, flushes it and renames it over `file`.
    // Throws fileio::FileError, and QBDatImage::Cancelled soon after `stop`
    // becomes true; the temporary file is removed either way.
    static void write(const QBDatImage& image, const std::filesystem::path& file,
                      const std::atomic<bool>* stop = nullptr);
};

} // namespace orv
