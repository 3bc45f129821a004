#include "core/reference/call_image_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>

#include "core/util/file_io.h"
#include "core/util/unique_fd.h"

namespace orv {
namespace fs = std::filesystem;

namespace {

constexpr std::array<char, 8> kMagic{'O', 'R', 'V', 'Q', 'B', 'I', 'M', 'G'};
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kAlign = 8;
constexpr std::size_t kWriteChunk = std::size_t{1} << 20;

// The file's first bytes. The layout is this machine's (little-endian,
// the packed record's size); a file of another layout is rebuilt.
struct Header {
    std::array<char, 8> magic{};
    std::uint32_t version = 0;
    std::uint32_t recordBytes = 0;
    std::int64_t stamp = 0;
    std::uint64_t records = 0;
    std::uint64_t overflow = 0;
    // The bytes of the pair and triple lists of the call and locator index.
    std::uint64_t callPairs = 0, callTriples = 0, locPairs = 0, locTriples = 0;
    std::uint64_t fileSize = 0;
    std::uint64_t checksum = 0; // FNV-1a of the header with this field 0
};
static_assert(std::is_trivially_copyable_v<Header> && sizeof(Header) == 88);

std::uint64_t checksumOf(Header h) {
    h.checksum = 0;
    const auto* p = reinterpret_cast<const unsigned char*>(&h);
    std::uint64_t x = 0xcbf29ce484222325ULL;
    for (std::size_t i = 0; i < sizeof h; ++i) {
        x ^= p[i];
        x *= 0x100000001b3ULL;
    }
    return x;
}

std::uint64_t aligned(std::uint64_t n) {
    return (n + kAlign - 1) / kAlign * kAlign;
}

// The byte sizes of the sections in file order: records, overflow
// counters, then the seven tables of the call index and of the locator
// index.
constexpr std::size_t kSections = 16;
std::array<std::uint64_t, kSections> sectionBytes(const Header& h, std::uint64_t recordBytes,
                                                  std::uint64_t overflowBytes) {
    constexpr std::uint64_t w = sizeof(std::uint32_t);
    auto index = [](std::uint64_t pairs, std::uint64_t triples) {
        return std::array<std::uint64_t, 7>{GramIndex::kUniEntries * w,
                                            GramIndex::kBiEntries * w,
                                            GramIndex::kTriEntries * w,
                                            (GramIndex::kBiEntries + 1) * w,
                                            (GramIndex::kTriEntries + 1) * w,
                                            pairs,
                                            triples};
    };
    std::array<std::uint64_t, kSections> out{h.records * recordBytes, h.overflow * overflowBytes};
    const auto calls = index(h.callPairs, h.callTriples);
    const auto locs = index(h.locPairs, h.locTriples);
    std::copy(calls.begin(), calls.end(), out.begin() + 2);
    std::copy(locs.begin(), locs.end(), out.begin() + 9);
    return out;
}

template <class T> std::span<const std::uint8_t> bytesOf(std::span<const T> s) {
    return {reinterpret_cast<const std::uint8_t*>(s.data()), s.size_bytes()};
}

void appendSections(std::array<std::span<const std::uint8_t>, kSections>& out, std::size_t at,
                    const GramIndex::Sections& s) {
    out[at] = bytesOf(s.uni);
    out[at + 1] = bytesOf(s.biCount);
    out[at + 2] = bytesOf(s.triCount);
    out[at + 3] = bytesOf(s.biOffsets);
    out[at + 4] = bytesOf(s.triOffsets);
    out[at + 5] = s.biPostings;
    out[at + 6] = s.triPostings;
}

template <class T> std::span<const T> viewAs(std::span<const std::uint8_t> b) {
    return {reinterpret_cast<const T*>(b.data()), b.size() / sizeof(T)};
}

GramIndex::Sections indexAt(const std::array<std::span<const std::uint8_t>, kSections>& s,
                            std::size_t at) {
    return {viewAs<std::uint32_t>(s[at]),
            viewAs<std::uint32_t>(s[at + 1]),
            viewAs<std::uint32_t>(s[at + 2]),
            viewAs<std::uint32_t>(s[at + 3]),
            viewAs<std::uint32_t>(s[at + 4]),
            s[at + 5],
            s[at + 6]};
}

struct Unmap {
    std::size_t size;
    void operator()(void* p) const { ::munmap(p, size); }
};

[[noreturn]] void fail(const fs::path& p, const char* what) {
    throw fileio::FileError(std::string(what) + " " + p.string() + ": " +
                            std::generic_category().message(errno));
}

} // namespace

fs::path callImagePath(const fs::path& dbPath) {
    fs::path p = dbPath;
    p.replace_extension(".image");
    return p;
}

CallImageFile::Opened CallImageFile::fromBytes(std::span<const std::uint8_t> bytes,
                                               std::optional<std::int64_t> stamp,
                                               std::shared_ptr<const void> storage) {
    using Packed = QBDatImage::Packed;
    using Counters = QBDatImage::Counters;
    Opened damaged{nullptr, Verdict::Damaged};
    Header h;
    if (bytes.size() < sizeof h || reinterpret_cast<std::uintptr_t>(bytes.data()) % kAlign != 0)
        return damaged;
    std::memcpy(&h, bytes.data(), sizeof h);
    if (h.magic != kMagic || h.version != kVersion || h.recordBytes != sizeof(Packed) ||
        h.checksum != checksumOf(h) || h.fileSize != bytes.size())
        return damaged;
    // Each count is bounded by the file's size before it is multiplied.
    const std::uint64_t size = bytes.size();
    if (h.records > size / sizeof(Packed) || h.overflow > size / sizeof(Counters) ||
        h.callPairs > size || h.callTriples > size || h.locPairs > size || h.locTriples > size)
        return damaged;
    const auto sizes = sectionBytes(h, sizeof(Packed), sizeof(Counters));
    std::array<std::span<const std::uint8_t>, kSections> sections;
    std::uint64_t at = aligned(sizeof h);
    for (std::size_t i = 0; i < kSections; ++i) {
        if (at > size || sizes[i] > size - at)
            return damaged;
        sections[i] = bytes.subspan(at, sizes[i]);
        at = aligned(at + sizes[i]);
    }
    if (at != aligned(size))
        return damaged;
    if (stamp && h.stamp != *stamp)
        return {nullptr, Verdict::Stale};

    auto image = std::make_shared<QBDatImage>();
    image->entries_ = viewAs<Packed>(sections[0]);
    image->overflow_ = viewAs<Counters>(sections[1]);
    if (!image->calls_.adopt(indexAt(sections, 2)) || !image->locs_.adopt(indexAt(sections, 9)))
        return damaged;
    image->storage_ = std::move(storage);
    image->stamp_ = h.stamp;
    return {std::move(image), Verdict::Ok};
}

CallImageFile::Opened CallImageFile::open(const fs::path& file, std::int64_t stamp) {
    UniqueFd fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0)
        return {nullptr, errno == ENOENT ? Verdict::Missing : Verdict::Damaged};
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0 || st.st_size < static_cast<off_t>(sizeof(Header)))
        return {nullptr, Verdict::Damaged};
    const auto size = static_cast<std::size_t>(st.st_size);
    // The file is replaced by a rename, never rewritten in place, so the
    // mapping stays whole for as long as it lives.
    void* p = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd.get(), 0);
    if (p == MAP_FAILED)
        return {nullptr, Verdict::Damaged};
    std::shared_ptr<void> mapping(p, Unmap{size});
    return fromBytes({static_cast<const std::uint8_t*>(p), size}, stamp, std::move(mapping));
}

void CallImageFile::write(const QBDatImage& image, const fs::path& file,
                          const std::atomic<bool>* stop) {
    if (!image.stamp_ || image.calls_.sections().uni.empty() || image.locs_.sections().uni.empty())
        throw fileio::FileError("the image of " + file.string() + " has no stamp or no index");
    std::array<std::span<const std::uint8_t>, kSections> sections{bytesOf(image.entries_),
                                                                  bytesOf(image.overflow_)};
    appendSections(sections, 2, image.calls_.sections());
    appendSections(sections, 9, image.locs_.sections());

    Header h;
    h.magic = kMagic;
    h.version = kVersion;
    h.recordBytes = sizeof(QBDatImage::Packed);
    h.stamp = *image.stamp_;
    h.records = image.entries_.size();
    h.overflow = image.overflow_.size();
    h.callPairs = sections[7].size();
    h.callTriples = sections[8].size();
    h.locPairs = sections[14].size();
    h.locTriples = sections[15].size();
    std::uint64_t total = aligned(sizeof h);
    for (const auto& s : sections)
        total = aligned(total + s.size());
    h.fileSize = total;
    h.checksum = checksumOf(h);

    fs::path tmp = file;
    tmp += ".tmp" + std::to_string(::getpid());
    UniqueFd fd(::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (fd.get() < 0)
        fail(tmp, "cannot create");
    std::error_code ec;
    try {
        std::uint64_t written = 0;
        auto put = [&](std::span<const std::uint8_t> b) {
            while (!b.empty()) {
                if (stop && stop->load(std::memory_order_relaxed))
                    throw QBDatImage::Cancelled{};
                const ssize_t n = ::write(fd.get(), b.data(), std::min(b.size(), kWriteChunk));
                if (n < 0 && errno == EINTR)
                    continue;
                if (n <= 0)
                    fail(tmp, "cannot write");
                b = b.subspan(static_cast<std::size_t>(n));
                written += static_cast<std::uint64_t>(n);
            }
        };
        static constexpr std::array<std::uint8_t, kAlign> zeros{};
        auto pad = [&] { put(std::span(zeros).first(aligned(written) - written)); };
        put({reinterpret_cast<const std::uint8_t*>(&h), sizeof h});
        for (const auto& s : sections) {
            pad();
            put(s);
        }
        pad();
        if (::fsync(fd.get()) != 0)
            fail(tmp, "cannot flush");
        if (::close(fd.release()) != 0)
            fail(tmp, "cannot close");
        if (::rename(tmp.c_str(), file.c_str()) != 0)
            fail(file, "cannot replace");
    } catch (...) {
        fs::remove(tmp, ec);
        throw;
    }
}

} // namespace orv
