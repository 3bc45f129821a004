#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

// A substring index over many short texts (calls, locators): for every pair
// and triple of characters the ascending numbers of the texts that hold it,
// and for every single character how many texts hold it. A typed part of a
// call then costs one list look-up (two or three characters) or the walk of
// the rarest triple's list with a check of each text (four or more), instead
// of a scan over every text.
//
// The lists are stored as the gaps between neighbouring numbers, seven bits
// a byte: a list of a million texts takes a byte a number where it is dense
// and three where it is sparse, against four for plain numbers.
//
// The tables are read through views, so that an index can also stand in a
// file mapped into memory; a built index views its own vectors.
namespace orv {

class GramIndex {
public:
    // The numbers of one list, decoded while walked.
    class Postings {
    public:
        Postings() = default;
        Postings(const std::uint8_t* data, const std::uint8_t* end, std::size_t count)
            : data_(data), end_(end), count_(count) {}
        std::size_t size() const { return count_; }
        // Calls f(number) in ascending order until it returns false. A list
        // that ends early or holds a gap too wide for 32 bits (a damaged
        // file) ends the walk there.
        template <class F> void forEach(F f) const {
            const std::uint8_t* p = data_;
            std::uint32_t id = 0;
            for (std::size_t k = 0; k < count_; ++k) {
                std::uint32_t gap = 0;
                for (int shift = 0;; shift += 7) {
                    if (p == end_ || shift > 28)
                        return;
                    const std::uint8_t b = *p++;
                    gap |= static_cast<std::uint32_t>(b & 0x7F) << shift;
                    if (!(b & 0x80))
                        break;
                }
                id += gap;
                if (!f(id))
                    return;
            }
        }

    private:
        const std::uint8_t* data_ = nullptr;
        const std::uint8_t* end_ = nullptr;
        std::size_t count_ = 0;
    };

    // `textOf(i)` gives text i for i in [0, count). Returns false, with the
    // index left incomplete, when `stop` became true on the way.
    template <class TextOf>
    bool build(std::size_t count, TextOf textOf, const std::atomic<bool>* stop = nullptr) {
        auto stopped = [stop](std::size_t i) {
            return i % 65536 == 0 && stop && stop->load(std::memory_order_relaxed);
        };
        ownUni_.assign(kSymbols, 0);
        biCount_.assign(kBi, 0);
        triCount_.assign(kTri, 0);
        // First pass: how many texts and how many bytes each list takes.
        std::vector<std::uint32_t> biBytes(kBi + 1, 0), triBytes(kTri + 1, 0);
        std::array<std::uint32_t, kSymbols> uniSeen;
        uniSeen.fill(kNone);
        std::vector<std::uint32_t> biSeen(kBi, kNone), triSeen(kTri, kNone);
        for (std::size_t i = 0; i < count; ++i) {
            if (stopped(i))
                return false;
            const auto id = static_cast<std::uint32_t>(i);
            forEachGram(textOf(i), [&](std::uint32_t a, std::uint32_t b, std::uint32_t c, int n) {
                if (n == 1 && uniSeen[a] != id) {
                    uniSeen[a] = id;
                    ++ownUni_[a];
                } else if (n == 2 && biSeen[b] != id) {
                    biBytes[b + 1] += gapBytes(id, biSeen[b]);
                    biSeen[b] = id;
                    ++biCount_[b];
                } else if (n == 3 && triSeen[c] != id) {
                    triBytes[c + 1] += gapBytes(id, triSeen[c]);
                    triSeen[c] = id;
                    ++triCount_[c];
                }
            });
        }
        for (std::size_t i = 1; i < biBytes.size(); ++i)
            biBytes[i] += biBytes[i - 1];
        for (std::size_t i = 1; i < triBytes.size(); ++i)
            triBytes[i] += triBytes[i - 1];
        biPostings_.assign(biBytes.back(), 0);
        triPostings_.assign(triBytes.back(), 0);
        biOffsets_ = biBytes;
        triOffsets_ = triBytes;
        // Second pass: the gaps themselves; the byte counts become write
        // positions.
        std::fill(biSeen.begin(), biSeen.end(), kNone);
        std::fill(triSeen.begin(), triSeen.end(), kNone);
        for (std::size_t i = 0; i < count; ++i) {
            if (stopped(i))
                return false;
            const auto id = static_cast<std::uint32_t>(i);
            forEachGram(textOf(i), [&](std::uint32_t, std::uint32_t b, std::uint32_t c, int n) {
                if (n == 2 && biSeen[b] != id) {
                    biBytes[b] = put(biPostings_, biBytes[b], id, biSeen[b]);
                    biSeen[b] = id;
                } else if (n == 3 && triSeen[c] != id) {
                    triBytes[c] = put(triPostings_, triBytes[c], id, triSeen[c]);
                    triSeen[c] = id;
                }
            });
        }
        view_ = Sections{ownUni_,     biCount_,    triCount_,   biOffsets_,
                         triOffsets_, biPostings_, triPostings_};
        return true;
    }

    // The tables, in the order a file holds them.
    struct Sections {
        std::span<const std::uint32_t> uni, biCount, triCount, biOffsets, triOffsets;
        std::span<const std::uint8_t> biPostings, triPostings;
    };
    const Sections& sections() const { return view_; }
    // The sizes of the fixed tables, in entries.
    static constexpr std::size_t kUniEntries = 64;
    static constexpr std::size_t kBiEntries = 64 * 64;
    static constexpr std::size_t kTriEntries = 64 * 64 * 64;
    // Takes tables that live elsewhere (a mapped file) and must outlive this
    // index. Returns false, and changes nothing, when they do not fit
    // together: wrong sizes, or list offsets that fall outside the lists.
    bool adopt(const Sections& s);

    // How the candidates of one typed part are found.
    struct Plan {
        enum Kind { Nothing, Scan, List } kind = Nothing;
        // For List: the numbers of the texts holding the rarest gram.
        Postings list;
        // True when every text of the list holds the part (no check needed).
        bool exact = false;
        // Texts holding the part, when known without a walk.
        std::size_t knownCount = 0;
        bool countKnown = false;
        // What a walk costs: the list's length, or every text for a scan.
        std::size_t cost = 0;
    };
    Plan plan(std::string_view part, std::size_t textCount) const;

    std::size_t memoryBytes() const {
        return (view_.uni.size() + view_.biOffsets.size() + view_.triOffsets.size() +
                view_.biCount.size() + view_.triCount.size()) *
                   sizeof(std::uint32_t) +
               view_.biPostings.size() + view_.triPostings.size();
    }

private:
    static constexpr std::uint32_t kSymbols = 64;
    static constexpr std::uint32_t kBi = kSymbols * kSymbols;
    static constexpr std::uint32_t kTri = kSymbols * kSymbols * kSymbols;
    static constexpr std::uint8_t kOther = 38;

    static std::uint8_t symbol(char c) {
        if (c >= 'A' && c <= 'Z')
            return static_cast<std::uint8_t>(c - 'A' + 1);
        if (c >= '0' && c <= '9')
            return static_cast<std::uint8_t>(c - '0' + 27);
        if (c == '/')
            return 37;
        return kOther;
    }

    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    // The gap to the list's previous number; the first number is its own gap.
    static std::uint32_t gap(std::uint32_t id, std::uint32_t last) {
        return last == kNone ? id : id - last;
    }
    static std::uint32_t gapBytes(std::uint32_t id, std::uint32_t last) {
        std::uint32_t g = gap(id, last), n = 1;
        while (g >= 0x80) {
            g >>= 7;
            ++n;
        }
        return n;
    }
    static std::uint32_t put(std::vector<std::uint8_t>& out, std::uint32_t at, std::uint32_t id,
                             std::uint32_t last) {
        std::uint32_t g = gap(id, last);
        while (g >= 0x80) {
            out[at++] = static_cast<std::uint8_t>(g | 0x80);
            g >>= 7;
        }
        out[at++] = static_cast<std::uint8_t>(g);
        return at;
    }

    // Calls f(symbol, pair code, triple code, n) for each single character
    // (n = 1), pair (n = 2) and triple (n = 3) of the text. A text counts once
    // per gram: the builder remembers the last text that added each gram.
    template <class F> static void forEachGram(std::string_view s, F f) {
        std::uint32_t a = 0, b = 0;
        for (std::size_t i = 0; i < s.size(); ++i) {
            const std::uint32_t c = symbol(s[i]);
            f(c, 0, 0, 1);
            if (i >= 1)
                f(0, b * kSymbols + c, 0, 2);
            if (i >= 2)
                f(0, 0, (a * kSymbols + b) * kSymbols + c, 3);
            a = b;
            b = c;
        }
    }

    std::vector<std::uint32_t> ownUni_;
    std::vector<std::uint32_t> biCount_, triCount_;
    std::vector<std::uint32_t> biOffsets_, triOffsets_;
    std::vector<std::uint8_t> biPostings_, triPostings_;
    Sections view_;
};

} // namespace orv
