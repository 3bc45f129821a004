#include "core/reference/gram_index.h"

#include <algorithm>

namespace orv {

GramIndex::Plan GramIndex::plan(std::string_view part, std::size_t textCount) const {
    Plan p;
    if (part.empty()) {
        p.kind = Plan::Scan;
        p.exact = p.countKnown = true;
        p.knownCount = p.cost = textCount;
        return p;
    }
    const bool pure =
        std::none_of(part.begin(), part.end(), [](char c) { return symbol(c) == kOther; });
    if (part.size() == 1) {
        p.kind = Plan::Scan;
        p.cost = textCount;
        p.countKnown = pure;
        p.knownCount = pure && !view_.uni.empty() ? view_.uni[symbol(part[0])] : 0;
        return p;
    }
    auto listOf = [](std::span<const std::uint32_t> offsets, std::span<const std::uint32_t> counts,
                     std::span<const std::uint8_t> postings, std::uint32_t code) {
        if (offsets.empty())
            return Postings{};
        return Postings(postings.data() + offsets[code], postings.data() + offsets[code + 1],
                        counts[code]);
    };
    p.kind = Plan::List;
    if (part.size() == 2) {
        p.list = listOf(view_.biOffsets, view_.biCount, view_.biPostings,
                        symbol(part[0]) * kSymbols + symbol(part[1]));
    } else {
        // The rarest triple of the part bounds the candidates best.
        bool first = true;
        for (std::size_t i = 0; i + 2 < part.size(); ++i) {
            const std::uint32_t code =
                (symbol(part[i]) * kSymbols + symbol(part[i + 1])) * kSymbols + symbol(part[i + 2]);
            auto l = listOf(view_.triOffsets, view_.triCount, view_.triPostings, code);
            if (first || l.size() < p.list.size())
                p.list = l;
            first = false;
        }
    }
    p.exact = pure && part.size() <= 3;
    p.countKnown = p.exact;
    p.knownCount = p.exact ? p.list.size() : 0;
    p.cost = p.list.size();
    return p;
}

bool GramIndex::adopt(const Sections& s) {
    auto offsetsFit = [](std::span<const std::uint32_t> offsets, std::size_t entries,
                         std::size_t bytes) {
        if (offsets.size() != entries + 1 || offsets.front() != 0 || offsets.back() != bytes)
            return false;
        return std::is_sorted(offsets.begin(), offsets.end());
    };
    if (s.uni.size() != kUniEntries || s.biCount.size() != kBiEntries ||
        s.triCount.size() != kTriEntries ||
        !offsetsFit(s.biOffsets, kBiEntries, s.biPostings.size()) ||
        !offsetsFit(s.triOffsets, kTriEntries, s.triPostings.size()))
        return false;
    ownUni_ = {};
    biCount_ = triCount_ = biOffsets_ = triOffsets_ = {};
    biPostings_ = triPostings_ = {};
    view_ = s;
    return true;
}

} // namespace orv
