#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

// A substring index over many short texts (calls, locators): for every pair
// and triple of characters the sorted numbers of the texts that hold it, and
// for every single character how many texts hold it. A typed part of a call
// then costs one list look-up (two or three characters) or the walk of the
// rarest triple's list with a check of each text (four or more), instead of
// a scan over every text.
namespace orv {

class GramIndex {
public:
    // `textOf(i)` gives text i for i in [0, count). Returns false, with the
    // index left incomplete, when `stop` became true on the way.
    template <class TextOf>
    bool build(std::size_t count, TextOf textOf, const std::atomic<bool>* stop = nullptr) {
        auto stopped = [stop](std::size_t i) {
            return i % 65536 == 0 && stop && stop->load(std::memory_order_relaxed);
        };
        std::vector<std::uint32_t> biCount(kBi + 1, 0), triCount(kTri + 1, 0);
        uni_.fill(0);
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
                    ++uni_[a];
                } else if (n == 2 && biSeen[b] != id) {
                    biSeen[b] = id;
                    ++biCount[b + 1];
                } else if (n == 3 && triSeen[c] != id) {
                    triSeen[c] = id;
                    ++triCount[c + 1];
                }
            });
        }
        for (std::size_t i = 1; i < biCount.size(); ++i)
            biCount[i] += biCount[i - 1];
        for (std::size_t i = 1; i < triCount.size(); ++i)
            triCount[i] += triCount[i - 1];
        biOffsets_ = biCount;
        triOffsets_ = triCount;
        biPostings_.assign(biOffsets_.back(), 0);
        triPostings_.assign(triOffsets_.back(), 0);
        std::fill(biSeen.begin(), biSeen.end(), kNone);
        std::fill(triSeen.begin(), triSeen.end(), kNone);
        for (std::size_t i = 0; i < count; ++i) {
            if (stopped(i))
                return false;
            const auto id = static_cast<std::uint32_t>(i);
            forEachGram(textOf(i), [&](std::uint32_t, std::uint32_t b, std::uint32_t c, int n) {
                if (n == 2 && biSeen[b] != id) {
                    biSeen[b] = id;
                    biPostings_[biCount[b]++] = id;
                } else if (n == 3 && triSeen[c] != id) {
                    triSeen[c] = id;
                    triPostings_[triCount[c]++] = id;
                }
            });
        }
        return true;
    }

    // How the candidates of one typed part are found.
    struct Plan {
        enum Kind { Nothing, Scan, List } kind = Nothing;
        // For List: the numbers of the texts holding the rarest gram.
        std::span<const std::uint32_t> list;
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
        return (biOffsets_.size() + triOffsets_.size() + biPostings_.size() + triPostings_.size()) *
               sizeof(std::uint32_t);
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

    std::array<std::uint32_t, kSymbols> uni_{};
    std::vector<std::uint32_t> biOffsets_, triOffsets_;
    std::vector<std::uint32_t> biPostings_, triPostings_;
};

} // namespace orv
