// Samples as bytes of a wave file: little-endian, unsigned around 2^(bits-1) up to 8 bits, signed
// above.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tonvane {

// How the samples of one file are stored. All by whole bytes: 12 bits are 16 here.
struct SampleBytes {
    int32_t bytesPerSample = 0;  // 1 to 4
    int32_t zeroOffset = 0;      // 2^(bits-1); the lowest int at 32 bits, where nothing reads it
    double fullScale = 0.0;      // 2^(bits-1)
    int32_t minimum = 0;         // the range of the integers, as signed ones
    int32_t maximum = 0;
    int32_t signShift = 0;  // 32 - bits
    bool isFloat = false;   // float32 at full scale 1.0 instead, for decoding

    // For 1 to 32 bits.
    static SampleBytes OfBits(int32_t bits);

    // Bytes of whole samples to samples at full scale 1.0; `samples` is as long as there are bytes
    // for. A float that is no finite number becomes 0.
    void Decode(std::span<const uint8_t> bytes, std::span<double> samples) const;

    // Rounds to the nearest integer (halves up) and cuts at the range; a sample that is no number
    // becomes the lowest. `bytes` has bytesPerSample bytes for each sample.
    void Encode(std::span<const double> samples, std::span<uint8_t> bytes) const;
};

}  // namespace tonvane
