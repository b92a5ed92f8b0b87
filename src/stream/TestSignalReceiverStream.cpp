#include "stream/TestSignalReceiverStream.h"

#include <algorithm>

#include "stream/TestSignalSenderStream.h"

namespace tonvane {

bool CTestSignalReceiverStream::Open() {
    outputBuffer.Detach();
    inputBuffer.Allocate(inputFormat.channels, testBlockFrames, true);
    outputBuffer.Attach(inputBuffer.data, inputBuffer.channels, inputBuffer.frames, true);
    state = teststate::waiting;
    framesReceived = 0;
    block = 0;
    channel = 0;
    accumulators[0].ensure(testBlockFrames);
    captured.assign(static_cast<size_t>(config.repeats + 1) * testBlockFrames, 0.0);
    return true;
}

void CTestSignalReceiverStream::Close() {
    outputBuffer.Detach();
}

void CTestSignalReceiverStream::accumulate(const double* in) {
    const double scale = 1.0 / config.repeats;
    const auto sum = accumulators[0].first(accumulators[0].capacity);
    if (block == 0) {
        std::ranges::fill(sum, 0.0);
    }
    if (block <= config.repeats) {
        double* kept = captured.data() + static_cast<ptrdiff_t>(block) * testBlockFrames;
        for (size_t i = 0; i < sum.size(); ++i) {
            kept[i] = in[2 * i] + in[2 * i + 1];
            sum[i] += kept[i] * scale;
        }
    }
}

void CTestSignalReceiverStream::Process(const double* in, double* /*out*/) {
    if (state == teststate::waiting) {
        state = teststate::running;
        channel = -1;
    } else if (state == teststate::running) {
        if (block == 0) {
            ++channel;
        }
        if (channel == 1) {
            state = teststate::done;
            status_.announce("Analyzing ...");
        } else {
            accumulate(in);
            block = block + 1 == config.repeats + testPauseBlocks ? 0 : block + 1;
        }
    }
    framesReceived += testBlockFrames;
}

}  // namespace tonvane
