#pragma once

#include <array>
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
    // `textOf(i)` gives text i for i in [0, count).
    template <class TextOf> void build(std::size_t count, TextOf textOf) {
        std::vector<std::uint32_t> biCount(kBi + 1, 0), triCount(kTri + 1, 0);
        uni_.fill(0);
        Grams g;
        for (std::size_t i = 0; i < count; ++i) {
            grams(textOf(i), g);
            for (auto c : g.uni)
                ++uni_[c];
            for (auto c : g.bi)
                ++biCount[c + 1];
            for (auto c : g.tri)
                ++triCount[c + 1];
        }
        fill(count, textOf, biCount, triCount);
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

    struct Grams {
        std::vector<std::uint32_t> uni, bi, tri;
    };
    // The distinct grams of one text, so a text counts once per gram.
    static void grams(std::string_view s, Grams& g);

    template <class TextOf>
    void fill(std::size_t count, TextOf textOf, std::vector<std::uint32_t>& biCount,
              std::vector<std::uint32_t>& triCount) {
        for (std::size_t i = 1; i < biCount.size(); ++i)
            biCount[i] += biCount[i - 1];
        for (std::size_t i = 1; i < triCount.size(); ++i)
            triCount[i] += triCount[i - 1];
        biOffsets_ = biCount;
        triOffsets_ = triCount;
        biPostings_.assign(biOffsets_.back(), 0);
        triPostings_.assign(triOffsets_.back(), 0);
        Grams g;
        for (std::size_t i = 0; i < count; ++i) {
            grams(textOf(i), g);
            const auto id = static_cast<std::uint32_t>(i);
            for (auto c : g.bi)
                biPostings_[biCount[c]++] = id;
            for (auto c : g.tri)
                triPostings_[triCount[c]++] = id;
        }
    }

    std::array<std::uint32_t, kSymbols> uni_{};
    std::vector<std::uint32_t> biOffsets_, triOffsets_;
    std::vector<std::uint32_t> biPostings_, triPostings_;
};

} // namespace orv
