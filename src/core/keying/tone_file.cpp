#include "core/keying/tone_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "core/keying/morse_table.h"
#include "core/util/file_io.h"

namespace orv::keying {
namespace {

constexpr int kRate = 8000;
constexpr std::uint8_t kSilence = 128;

// One element's samples at amplitude 1000 with its ramps; t runs on across
// calls so that the dah continues the dit's phase.
std::vector<std::uint8_t> element(int length, const ToneParameters& p, float& t) {
    const float w = static_cast<float>(2 * 3.14159265358979 * 1000);
    std::vector<std::uint8_t> out(static_cast<std::size_t>(length));
    long a = 1000;
    for (int k = 1; k <= length; ++k) {
        const float wt = w * t;
        const double v = std::nearbyint(
            std::sin(static_cast<double>(wt)) * static_cast<double>(a) / 256.0 + 128.0);
        out[static_cast<std::size_t>(k - 1)] =
            v >= 1 && v <= 255 ? static_cast<std::uint8_t>(v) : (v < 129 ? 0 : 255);
        if (k < p.R)
            a += p.S;
        if (k >= length - p.R)
            a = std::max(0L, a - p.S);
        t = static_cast<float>(static_cast<double>(t) + 1.0 / kRate);
    }
    return out;
}

void putLe(std::vector<std::uint8_t>& out, std::uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

} // namespace

ToneParameters toneParameters(int wpm) {
    // The quotient passes through its 15-digit text form before rounding,
    // as the number-to-text conversion of the old world did.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.15g", 9600.0 / wpm);
    ToneParameters p;
    p.N = static_cast<int>(std::nearbyint(std::strtod(buf, nullptr)));
    p.R = static_cast<int>(std::trunc(static_cast<double>(p.N) / 100 * 5));
    p.S = p.R > 0 ? 32000 / p.R : 0;
    return p;
}

std::vector<std::uint8_t> toneSamples(int wpm, const std::string& ansiText, int leadUnits,
                                      int trailUnits) {
    const ToneParameters p = toneParameters(wpm);
    const std::size_t n = static_cast<std::size_t>(p.N);
    float t = 0;
    const auto dit = element(p.N, p, t);
    const auto dah = element(3 * p.N, p, t);

    std::vector<std::uint8_t> buf(ansiText.size() * 27 * 3 * n + 3 * n, kSilence);
    std::size_t pos = leadUnits > 0 ? n * static_cast<std::size_t>(leadUnits) : 1;
    auto ensure = [&buf](std::size_t size) {
        if (buf.size() < size)
            buf.resize(size, kSilence);
    };
    const MorseTable& table = MorseTable::instance();
    for (std::size_t i = 0; i < ansiText.size(); ++i) {
        const MorseCode& e = table.code(static_cast<unsigned char>(ansiText[i]));
        for (std::size_t j = 0; j < e.size(); ++j) {
            if (e[j] > 0) {
                const auto& src = e[j] == 1 ? dit : dah;
                ensure(pos + src.size());
                for (std::uint8_t v : src)
                    buf[pos++] = v;
                if (j + 1 < e.size())
                    pos += n;
                else if (i + 1 < ansiText.size())
                    pos += 3 * n;
            } else {
                // In a file every pause is 4 units, whatever the table says.
                pos += 4 * n;
            }
        }
    }
    const std::size_t end = pos + n * static_cast<std::size_t>(std::max(trailUnits, 0));
    buf.resize(end, kSilence);
    return buf;
}

std::vector<std::uint8_t> wavHeader(std::uint32_t dataLength, std::uint32_t sampleRate,
                                    std::uint16_t channels, std::uint16_t bitsPerSample) {
    std::vector<std::uint8_t> out;
    auto tag = [&out](const char* s) {
        for (int i = 0; i < 4; ++i)
            out.push_back(static_cast<std::uint8_t>(s[i]));
    };
    const std::uint32_t block = channels * ((bitsPerSample + 7u) / 8u);
    tag("RIFF");
    putLe(out, dataLength + 36, 4);
    tag("WAVE");
    tag("fmt ");
    putLe(out, 16, 4);
    putLe(out, 1, 2);
    putLe(out, channels, 2);
    putLe(out, sampleRate, 4);
    putLe(out, sampleRate * block, 4);
    putLe(out, block, 2);
    putLe(out, bitsPerSample, 2);
    tag("data");
    putLe(out, dataLength, 4);
    return out;
}

std::vector<std::uint8_t> toneFileBytes(int wpm, const std::string& ansiText, int leadUnits,
                                        int trailUnits) {
    const auto samples = toneSamples(wpm, ansiText, leadUnits, trailUnits);
    auto out = wavHeader(static_cast<std::uint32_t>(samples.size()), kRate, 1, 8);
    out.insert(out.end(), samples.begin(), samples.end());
    return out;
}

void BuildToneFile(int wpm, const std::filesystem::path& path, const std::string& ansiText,
                   int leadUnits, int trailUnits) {
    const auto bytes = toneFileBytes(wpm, ansiText, leadUnits, trailUnits);
    fileio::writeAtomic(path, std::string(bytes.begin(), bytes.end()));
}

} // namespace orv::keying
