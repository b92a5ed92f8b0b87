#include "stream/TestSignalSenderStream.h"

#include <algorithm>
#include <array>

namespace tonvane {

namespace {

// Of the positions that a channel may stand for; only the first is measured.
constexpr std::array<const char*, 4> measuringTexts{"Measuring: LTop", "Measuring: RTop",
                                                    "Measuring: LBot", "Measuring: RBot"};

}  // namespace

bool CTestSignalSenderStream::Configure() {
    return CDspStream::Configure(MakeWaveFormat(config.sampleRate, 2, 16));
}

bool CTestSignalSenderStream::Open() {
    samples = config.signal.excitation.time().data();
    outputBuffer.Allocate(outputFormat.channels, testBlockFrames, false);
    state = teststate::waiting;
    framesSent = 0;
    block = 0;
    channel = 0;
    return true;
}

bool CTestSignalSenderStream::Step() {
    if (state == teststate::waiting) {
        std::ranges::fill(outputBuffer.samples(), 0.0);
        state = teststate::running;
        channel = -1;
    } else if (state == teststate::running) {
        if (block == 0) {
            ++channel;
            if (channel == 1) {
                state = teststate::done;
            } else {
                status_.announce(measuringTexts[channel]);
            }
        }
        if (state == teststate::running) {
            double* run = outputBuffer.data + int64_t{channel} * testBlockFrames;
            if (block < config.repeats) {
                std::copy_n(samples, testBlockFrames, run);
            } else {
                std::fill_n(run, testBlockFrames, 0.0);
            }
            block = block + 1 == config.repeats + testPauseBlocks ? 0 : block + 1;
        }
    }
    Pump();
    framesSent += testBlockFrames;
    return state != teststate::done;
}

}  // namespace tonvane
