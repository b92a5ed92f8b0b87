// The reader of wave files. The input is a file.
#include <algorithm>
#include <cmath>

#include "FuzzSupport.h"
#include "wavefile/WaveFile.h"

namespace tonvane::fuzz {

namespace {

constexpr int32_t blockFrames = 256;

void checkHead(const CWaveFile& file, int32_t bits, int32_t channels, size_t inputBytes) {
    Require(bits == 8 || bits == 16 || bits == 24 || bits == 32, "bits are whole bytes, 1 to 4");
    Require(channels >= 1 && channels <= 32767, "there is a channel");
    const auto frameBytes = static_cast<size_t>(bits / 8) * static_cast<size_t>(channels);
    Require(static_cast<size_t>(file.FramesLeft()) * frameBytes <= inputBytes,
            "no more frames are promised than the file can hold");
}

void checkSamples(CWaveFile& file, int32_t channels) {
    static std::vector<double> samples;
    samples.assign(static_cast<size_t>(blockFrames) * static_cast<size_t>(channels), 2.0);
    const int32_t all = file.FramesLeft();
    for (int32_t left = all; left > 0; left = file.FramesLeft()) {
        const int32_t count = std::min(left, blockFrames);
        file.Read(samples.data(), count);
        Require(file.FramesLeft() == left - count, "what is read is gone");
        Require(std::all_of(samples.begin(), samples.begin() + std::ptrdiff_t{count} * channels,
                            [](double sample) { return sample >= -1.0 && sample < 1.0; }),
                "samples are within full scale");
    }
    file.SeekFrame(INT32_MAX);
    Require(file.FramesLeft() >= 0 && file.FramesLeft() <= all, "behind the end nothing is left");
    file.SeekFrame(0);
    Require(file.FramesLeft() == all, "the first frame is found again");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane;
    using namespace tonvane::fuzz;
    const std::string path = ScratchFile(TextOf(data, size));
    CWaveFile file;
    int32_t rate = 0;
    int32_t bits = 0;
    int32_t channels = 0;
    if (!file.Open(path, rate, bits, channels)) {
        Require(!file.isOpen() && file.FramesLeft() == 0, "a refused file is closed");
        return 0;
    }
    checkHead(file, bits, channels, size);
    checkSamples(file, channels);
    return 0;
}
