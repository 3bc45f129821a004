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
        p.knownCount = pure ? uni_[symbol(part[0])] : 0;
        return p;
    }
    auto listOf = [](const std::vector<std::uint32_t>& offsets,
                     const std::vector<std::uint32_t>& counts,
                     const std::vector<std::uint8_t>& postings, std::uint32_t code) {
        if (offsets.empty())
            return Postings{};
        return Postings(postings.data() + offsets[code], counts[code]);
    };
    p.kind = Plan::List;
    if (part.size() == 2) {
        p.list =
            listOf(biOffsets_, biCount_, biPostings_, symbol(part[0]) * kSymbols + symbol(part[1]));
    } else {
        // The rarest triple of the part bounds the candidates best.
        bool first = true;
        for (std::size_t i = 0; i + 2 < part.size(); ++i) {
            const std::uint32_t code =
                (symbol(part[i]) * kSymbols + symbol(part[i + 1])) * kSymbols + symbol(part[i + 2]);
            auto l = listOf(triOffsets_, triCount_, triPostings_, code);
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

} // namespace orv
