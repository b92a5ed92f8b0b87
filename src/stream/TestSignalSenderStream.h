// The source of a measurement: plays the test signal a number of periods on the first channel.
#pragma once

#include <cstdint>

#include "signal/MeasurementConfig.h"
#include "stream/DspStream.h"
#include "stream/StreamNotify.h"
#include "transform/ResponseShape.h"

namespace tonvane {

// Frames of a block of both test signal stages: one period of the signal.
constexpr int32_t testBlockFrames = responseLength;

// Blocks of silence behind the periods of a channel.
constexpr int32_t testPauseBlocks = 3;

// What either test signal stage is at.
namespace teststate {
constexpr int32_t waiting = 0;
constexpr int32_t running = 1;
constexpr int32_t done = 2;
}  // namespace teststate

// The timing against CTestSignalReceiverStream makes the average exact without looking for the
// signal's start: docs/audio.md has the table of blocks.
class CTestSignalSenderStream : public CDspStream {
  public:
    // Both outlive the stage.
    CTestSignalSenderStream(const MeasurementConfig& measurement, StreamStatus& status)
        : config(measurement), status_(status) {}

    // Opens the chain with 2 channels of 16 bits at the measuring rate.
    bool Configure();

    // The signal has been generated; its samples stay where they are until the end of the run.
    bool Open() override;
    void Process(const double* /*in*/, double* /*out*/) override {}

    // Sends the next block; false with the last one.
    bool Step();

    const MeasurementConfig& config;
    const double* samples = nullptr;  // one period
    int32_t state = teststate::waiting;
    int32_t framesSent = 0;
    int32_t block = 0;    // within the channel's periods and pause
    int32_t channel = 0;  // -1 ahead of the first

  private:
    StreamStatus& status_;
};

}  // namespace tonvane
