#include "core/rig/band_plan.h"

#include <cctype>
#include <cmath>
#include <cstdio>

namespace orv::rig {
namespace {

constexpr std::int64_t kMHz = 1'000'000;

constexpr std::array<BandEdges, kBandCount> kEdges{{
    {50 * kMHz, 54 * kMHz},
    {144 * kMHz, 148 * kMHz},
    {430 * kMHz, 440 * kMHz},
    {1240 * kMHz, 1300 * kMHz},
    {2300 * kMHz, 2450 * kMHz},
    {3300 * kMHz, 3500 * kMHz},
    {5650 * kMHz, 5850 * kMHz},
    {10000 * kMHz, 10500 * kMHz},
    {24000 * kMHz, 24250 * kMHz},
    {47000 * kMHz, 47200 * kMHz},
}};

// The narrowband centre of each band, where contests happen.
constexpr std::array<std::int64_t, kBandCount> kCentres{
    50'200'000,    144'300'000,   432'200'000,    1'296'200'000,  2'320'200'000,
    3'400'100'000, 5'760'100'000, 10'368'100'000, 24'048'100'000, 47'088'100'000,
};
// How far a transverter's IF may stand from the IF of the band's centre.
constexpr std::int64_t kIfSpan = 10 * kMHz;

std::int64_t offsetHz(const TransverterOffsets& offsets, int band) {
    return std::llround(offsets[static_cast<std::size_t>(band)] * static_cast<double>(kMHz));
}

bool inBand(std::int64_t hz, int band) {
    const BandEdges& e = kEdges[static_cast<std::size_t>(band)];
    return hz >= e.lowHz && hz <= e.highHz;
}

} // namespace

const BandEdges& bandEdges(int b) {
    return kEdges.at(static_cast<std::size_t>(b));
}

std::int64_t bandFrequency(std::int64_t rigHz, const TransverterOffsets& offsets, int band) {
    return rigHz + offsetHz(offsets, band);
}

std::optional<int> bandOfFrequency(std::int64_t rigHz, const TransverterOffsets& offsets,
                                   std::optional<int> currentBand) {
    if (rigHz <= 0)
        return std::nullopt;
    std::optional<int> plain, transverted;
    for (int b = 0; b < kBandCount; ++b) {
        if (!inBand(bandFrequency(rigHz, offsets, b), b))
            continue;
        // An offset maps a wide range of rig frequencies into the band; only
        // the IF the transverter works on counts.
        const std::int64_t centreIf = kCentres[static_cast<std::size_t>(b)] - offsetHz(offsets, b);
        if (offsetHz(offsets, b) != 0 && (rigHz < centreIf - kIfSpan || rigHz > centreIf + kIfSpan))
            continue;
        if (currentBand && *currentBand == b)
            return b;
        if (offsetHz(offsets, b) != 0) {
            if (!transverted)
                transverted = b;
        } else if (!plain) {
            plain = b;
        }
    }
    return transverted ? transverted : plain;
}

std::string programMode(std::string_view rigMode) {
    std::string m;
    for (char c : rigMode)
        if (!std::isspace(static_cast<unsigned char>(c)))
            m += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    struct Alias {
        std::string_view rig, program;
    };
    static constexpr Alias kAliases[] = {
        {"USB", "SSB"}, {"LSB", "SSB"}, {"PKTUSB", "SSB"}, {"PKTLSB", "SSB"}, {"CW", "CW"},
        {"CWR", "CW"},  {"FM", "FM"},   {"FMN", "FM"},     {"WFM", "FM"},     {"PKTFM", "FM"},
        {"AM", "AM"},   {"AMS", "AM"},  {"SAM", "AM"},     {"RTTY", "RTTY"},  {"RTTYR", "RTTY"},
    };
    for (const Alias& a : kAliases)
        if (m == a.rig)
            return std::string(a.program);
    return m;
}

std::string formatMHz(std::int64_t hz) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%lld.%03lld", static_cast<long long>(hz / kMHz),
                  static_cast<long long>((hz % kMHz) / 1000));
    return buf;
}

} // namespace orv::rig
