// The bytes of RIFF and wave files, put together by the layout of the format.
#pragma once

#include <cstdint>
#include <string>

namespace tonvane::tests {

inline std::string LittleEndian(uint64_t value, size_t bytes) {
    std::string text;
    for (size_t i = 0; i < bytes; ++i) {
        text += static_cast<char>(value >> (8 * i));
    }
    return text;
}

inline std::string Chunk(const std::string& tag, const std::string& content) {
    return tag + LittleEndian(content.size(), 4) + content;
}

constexpr uint32_t pcm = 1;
constexpr uint32_t floating = 3;

struct WaveFormat {
    uint32_t tag = pcm;
    uint32_t channels = 1;
    uint32_t bits = 16;
    uint32_t rate = 44100;
};

// The content of a format chunk.
inline std::string FormatBytes(const WaveFormat& format) {
    const uint32_t frame = format.channels * format.bits / 8;
    return LittleEndian(format.tag, 2) + LittleEndian(format.channels, 2) +
           LittleEndian(format.rate, 4) + LittleEndian(format.rate * frame, 4) +
           LittleEndian(frame, 2) + LittleEndian(format.bits, 2);
}

inline std::string RiffBytes(const std::string& chunks) {
    return Chunk("RIFF", "WAVE" + chunks);
}

inline std::string WaveBytes(const WaveFormat& format, const std::string& data) {
    return RiffBytes(Chunk("fmt ", FormatBytes(format)) + Chunk("data", data));
}

// A file of 16 bits: frame i holds the number i + 1 in channel 0 and silence in the others.
inline std::string CountingWave(uint32_t rate, uint32_t channels, int32_t frames) {
    std::string data;
    for (int32_t i = 1; i <= frames; ++i) {
        data += LittleEndian(static_cast<uint64_t>(i), 2) + std::string(2 * (channels - 1), '\0');
    }
    return WaveBytes({pcm, channels, 16, rate}, data);
}

}  // namespace tonvane::tests
