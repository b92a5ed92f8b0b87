// The end of a measurement: averages what is captured into one period of the test signal.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "signal/MeasurementConfig.h"
#include "stream/DspStream.h"
#include "stream/StreamNotify.h"
#include "transform/SampleArray.h"

namespace tonvane {

// Blocks of 32768 frames, half a period off the sender's. One block more than the played periods is
// added up: the first and the last hold half a period each. The capture has two channels, which are
// summed.
class CTestSignalReceiverStream : public CDspStream {
  public:
    // Both outlive the stage.
    CTestSignalReceiverStream(const MeasurementConfig& measurement, StreamStatus& status)
        : config(measurement), status_(status) {}

    bool Open() override;
    void Process(const double* in, double* out) override;
    void Close() override;

    const MeasurementConfig& config;
    int32_t state = 0;  // of teststate
    int32_t framesReceived = 0;
    int32_t block = 0;
    int32_t channel = 0;

    // The averaged period, 32768 samples, half a period late; for when the capture has ended.
    std::array<SampleArray, 1> accumulators;

    // What has been added up, block by block.
    std::vector<double> captured;

  private:
    void accumulate(const double* in);

    StreamStatus& status_;
};

}  // namespace tonvane
