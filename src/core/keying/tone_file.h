#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// The tone file: a text rendered in advance into an 8 kHz mono 8-bit WAV with a
// 1000 Hz tone, so that the sound card's sample clock gives the timing.
namespace orv::keying {

struct ToneParameters {
    int N = 0; // samples per dit
    int R = 0; // samples of the rise and fall ramp
    int S = 0; // amplitude step of the ramp
};
// N from 9600 / wpm through its text form, rounded half to even.
ToneParameters toneParameters(int wpm);

// The samples of the file (without header); ansiText holds characters of the
// Morse table only.
std::vector<std::uint8_t> toneSamples(int wpm, const std::string& ansiText, int leadUnits,
                                      int trailUnits);
// The 44-byte header followed by the samples.
std::vector<std::uint8_t> toneFileBytes(int wpm, const std::string& ansiText, int leadUnits,
                                        int trailUnits);

// The 44-byte header of a PCM WAV file holding dataLength bytes.
std::vector<std::uint8_t> wavHeader(std::uint32_t dataLength, std::uint32_t sampleRate,
                                    std::uint16_t channels, std::uint16_t bitsPerSample);

// Writes the tone file, replacing one that exists. Throws fileio::FileError
// when it cannot be written.
void BuildToneFile(int wpm, const std::filesystem::path& path, const std::string& ansiText,
                   int leadUnits, int trailUnits);

} // namespace orv::keying
