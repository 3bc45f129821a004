// The image file of the call database (`QBDat.image`): any bytes as the
// file, and a real image with bytes of the input written over it or cut
// short. A file is taken or refused, never read beyond its end; a taken
// image answers searches with record numbers it holds.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "call_db_fixture.h"
#include "core/reference/call_image_file.h"
#include "fuzz_support.h"

using namespace orv;

namespace {

// The image file of the fixture's database, as a start writes it.
const std::string& realImage() {
    static const std::string bytes = [] {
        const auto db = fuzz::freshCallDb(fuzz::workDir() / "image-db");
        const auto image = QBDatImage::load(db);
        CallImageFile::write(image, callImagePath(db));
        return fuzz::bytesOf(callImagePath(db));
    }();
    return bytes;
}

// Mode byte 1: the rest of the input is (offset, byte) pairs written over
// the real image; mode byte 2: the real image cut to the length the next
// two bytes give; otherwise the input itself.
std::string fileOf(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return {};
    std::string file = realImage();
    if (data[0] == 1) {
        for (std::size_t i = 1; i + 3 <= size; i += 3) {
            const std::size_t at =
                (std::size_t{data[i]} | std::size_t{data[i + 1]} << 8) % file.size();
            file[at] = static_cast<char>(data[i + 2]);
        }
        return file;
    }
    if (data[0] == 2 && size >= 3) {
        file.resize(std::min<std::size_t>(file.size(), data[1] | std::size_t{data[2]} << 8));
        return file;
    }
    return std::string(reinterpret_cast<const char*>(data), size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string file = fileOf(data, size);
    // The reader wants the alignment a mapping has.
    std::vector<std::uint64_t> aligned((file.size() + 7) / 8);
    if (!file.empty())
        std::memcpy(aligned.data(), file.data(), file.size());
    const std::span<const std::uint8_t> bytes(reinterpret_cast<const std::uint8_t*>(aligned.data()),
                                              file.size());
    const auto opened = CallImageFile::fromBytes(bytes, std::nullopt, nullptr);
    FUZZ_CHECK((opened.image != nullptr) == (opened.verdict == CallImageFile::Verdict::Ok),
               "an image without its verdict");
    if (!opened.image)
        return 0;
    for (const char* call : {"D", "DL", "ABC", "1XYZ", "OE1ABC", "A?"}) {
        for (const char* loc : {"", "JN", "JN88"}) {
            const auto r = opened.image->search({call, loc, 50});
            for (auto n : r.records) {
                FUZZ_CHECK(n >= 1 && n <= opened.image->size(), "a record number out of range");
                (void)opened.image->WriteInList(n);
            }
        }
    }
    return 0;
}
