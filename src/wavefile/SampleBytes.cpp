#include "wavefile/SampleBytes.h"

#include <bit>
#include <cmath>

#include "text/LittleEndian.h"

namespace tonvane {

SampleBytes SampleBytes::OfBits(int32_t bits) {
    SampleBytes coding;
    coding.bytesPerSample = (bits + 7) / 8;
    const int32_t storedBits = coding.bytesPerSample * 8;
    const int64_t half = int64_t{1} << (storedBits - 1);
    coding.zeroOffset = static_cast<int32_t>(half);
    coding.fullScale = static_cast<double>(half);
    coding.minimum = static_cast<int32_t>(-half);
    coding.maximum = static_cast<int32_t>(half - 1);
    coding.signShift = 32 - storedBits;
    return coding;
}

void SampleBytes::Decode(std::span<const uint8_t> bytes, std::span<double> samples) const {
    const auto width = static_cast<size_t>(bytesPerSample);
    for (double& sample : samples) {
        const auto word = LoadLittleEndian<uint32_t>(bytes.first(width));
        bytes = bytes.subspan(width);
        if (isFloat) {
            const auto number = std::bit_cast<float>(word);
            sample = std::isfinite(number) ? number : 0.0;
            continue;
        }
        const int32_t value = bytesPerSample == 1
                                  ? static_cast<int32_t>(word) - zeroOffset
                                  : static_cast<int32_t>(word << signShift) >> signShift;
        sample = value / fullScale;
    }
}

void SampleBytes::Encode(std::span<const double> samples, std::span<uint8_t> bytes) const {
    const auto width = static_cast<size_t>(bytesPerSample);
    for (const double sample : samples) {
        const double rounded = std::floor(sample * fullScale + 0.5);
        int32_t value = minimum;
        if (rounded >= maximum) {
            value = maximum;
        } else if (rounded > minimum) {
            value = static_cast<int32_t>(rounded);
        }
        if (bytesPerSample == 1) {
            value += zeroOffset;
        }
        StoreLittleEndian(static_cast<uint32_t>(value), bytes.first(width));
        bytes = bytes.subspan(width);
    }
}

}  // namespace tonvane
