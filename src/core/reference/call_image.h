#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/bands.h"
#include "core/reference/call_db.h"
#include "core/reference/gram_index.h"
#include "core/util/datetime.h"

// The memory image of the call database that the main window searches on
// each key stroke: the records in call order (`QBDatListe`, record numbers
// from 1) with substring indexes over calls and locators that take the place
// of the flat strings `QBDatCalls` and `QBDatLocs`.
namespace orv {

// One record of `QBDatListe` as its readers see it. Null fields read as
// blanks or 0.
struct QBDatEntry {
    std::array<char, kCallSize> call{};   // up to 15 characters, then zeros
    std::array<char, kLocatorSize> loc{}; // up to 6 characters, then zeros
    std::array<std::int32_t, kBandCount> counters{};
    DateTime last; // `LastDate`; 1899-12-30 when the field is empty

    std::string_view Call() const { return text(call); }
    std::string_view Locator() const { return text(loc); }
    DateTime lastDate() const { return last; }

    template <std::size_t N> static std::string_view text(const std::array<char, N>& a) {
        std::size_t n = 0;
        while (n < N && a[n] != 0)
            ++n;
        return std::string_view(a.data(), n);
    }
};

// Lets the window stop a search that a newer key stroke made useless: each
// key stroke takes a new generation, and a search that sees the generation
// move on stops at its next check.
class SearchGeneration {
public:
    std::uint64_t next() { return ++gen_; }
    std::uint64_t current() const { return gen_.load(std::memory_order_relaxed); }

private:
    std::atomic<std::uint64_t> gen_{0};
};

class CancelToken {
public:
    CancelToken() = default; // never cancelled
    CancelToken(const SearchGeneration& g, std::uint64_t mine) : gen_(&g), mine_(mine) {}
    bool cancelled() const { return gen_ && gen_->current() != mine_; }

private:
    const SearchGeneration* gen_ = nullptr;
    std::uint64_t mine_ = 0;
};

struct CallSearch {
    std::string callPart;         // a part of a call; empty: no condition
    std::string locatorPart;      // a part of a locator; empty: no condition
    std::size_t maxRecords = 100; // record numbers returned, the first in call order
};

struct CallSearchResult {
    std::size_t found = 0;              // records matching every part given
    std::vector<std::uint32_t> records; // the first of them, record numbers from 1
    bool cancelled = false;             // stopped; found and records are incomplete
};

class QBDatImage {
public:
    QBDatImage() = default;
    // The records and the index are viewed, not copied: a copy would view
    // the original's memory.
    QBDatImage(const QBDatImage&) = delete;
    QBDatImage& operator=(const QBDatImage&) = delete;
    QBDatImage(QBDatImage&&) = default;
    QBDatImage& operator=(QBDatImage&&) = default;
    // Thrown by load() when it was asked to stop.
    struct Cancelled {};
    // Load: reads every record in call order and builds the indexes. A
    // missing file or table gives an empty image. Throws sql::Error, and
    // Cancelled soon after `stop` becomes true.
    static QBDatImage load(const std::filesystem::path& dbPath,
                           const std::atomic<bool>* stop = nullptr);
    static QBDatImage fromRecords(const std::vector<CallRecord>& records);

    // The database's change stamp read together with the records (see
    // callDbStamp); empty for an image not read from a database with one.
    std::optional<std::int64_t> stamp() const { return stamp_; }

    std::size_t size() const { return entries_.size(); }
    // Record number n, from 1, unpacked.
    QBDatEntry record(std::uint32_t n) const;

    // A part of a call and a part of a locator, each alone or both together,
    // as typed (trimmed and upper-cased here). Each record counts once.
    CallSearchResult search(const CallSearch& query, const CancelToken& cancel = {}) const;

    // WriteInList: the lookup list line of record n.
    std::string WriteInList(std::uint32_t n) const;

    std::size_t indexBytes() const { return calls_.memoryBytes() + locs_.memoryBytes(); }
    // The records and the indexes.
    std::size_t memoryBytes() const {
        return entries_.size() * sizeof(Packed) + overflow_.size() * sizeof(overflow_[0]) +
               indexBytes();
    }

private:
    friend class CallImageFile;

    // A record as held: 48 bytes, so that a national list of a million calls
    // stays small. Counters of 0 to 65534 stand here; a record with any other
    // keeps all ten in `overflow_` and its index in the first two places.
    struct Packed {
        std::array<char, kCallSize> call{};
        std::array<char, kLocatorSize> loc{};
        std::uint8_t flags = 0;
        std::array<std::uint16_t, kBandCount> counters{};
        // `LastDate` as seconds since 0001-01-01, 48 bits.
        std::array<std::uint16_t, 3> when{};

        static constexpr std::uint8_t kOverflow = 1;
        std::string_view Call() const { return QBDatEntry::text(call); }
        std::string_view Locator() const { return QBDatEntry::text(loc); }
    };
    void pack(Packed& p, const std::array<std::int32_t, kBandCount>& counters,
              const DateTime& last);

    using Counters = std::array<std::int32_t, kBandCount>;
    void buildIndexes(const std::atomic<bool>* stop);
    // Points the views at the vectors built here.
    void viewOwn();

    // Built here, or empty when the image stands in a mapped file.
    std::vector<Packed> ownEntries_;
    std::vector<Counters> ownOverflow_;
    // What the search reads.
    std::span<const Packed> entries_;
    std::span<const Counters> overflow_;
    GramIndex calls_;
    GramIndex locs_;
    // Keeps the mapped file of the views alive.
    std::shared_ptr<const void> storage_;
    std::optional<std::int64_t> stamp_;
};

// The lookup list line of one record: the call in columns 1 to 13, the
// locator from column 14, then the ten counters in band order, each in 3
// columns and at most 999, with `Bc3` in the seventh place as in the eighth,
// then `LastDate` as "DD.MM.YYYY" from the year 1900 on; a blank between
// fields.
std::string listLine(const QBDatEntry& e);

// The call and the locator of a lookup list line (a database line or a
// worked-before line), upper case and trimmed, as F8, F9 and a click take
// them: the call from columns 1 to 13, the locator from columns 14 to 19.
std::string listLineCall(std::string_view line);
std::string listLineLocator(std::string_view line);

} // namespace orv
