// A device on an ASIO driver.
//
// The driver calls at each buffer switch on a thread of its own; between that thread and the
// workers stand two lock-free rings. The callbacks carry no context, so they go to the device that
// was made last: only one can work at a time.
#pragma once

#include <array>
#include <atomic>
#include <string>

#include "device/SampleDevice.h"
#include "device/asio/AsioDriverList.h"
#include "device/asio/AsioInterface.h"

namespace tonvane {

// What is known of a driver; all zero for one that could not be initialised.
struct AsioDriverInfo {
    int32_t asioVersion;
    int32_t driverVersion;
    char name[32];
    char errorMessage[124];
    void* systemReference;  // null
    int32_t inputChannels;
    int32_t outputChannels;
    int32_t leastSize;  // of a buffer, in frames
    int32_t mostSize;
    int32_t preferredSize;
    int32_t granularity;
    double sampleRate;
    bool postOutput;  // it wants to be told when the output is ready
    int32_t inputLatency;
    int32_t outputLatency;
    int32_t inputBuffers;  // that are in use; the entries below begin with the inputs
    int32_t outputBuffers;
    std::array<ASIOBufferInfo, 16> buffers;
    std::array<ASIOChannelInfo, 16> channels;
};

class CAsioWave : public SampleDevice {
  public:
    // Initialises the driver; null for one that could not be loaded, of which `refusal` then tells
    // at every Open. The driver is let go of on the thread that destroys the device.
    CAsioWave(AsioDriver driver, ShowDeviceError showError, std::string refusal = {});
    ~CAsioWave() override;

    // Refuses, and shows, a rate or a number of channels that the driver does not have; refuses in
    // silence two rates and what the driver cannot allocate.
    bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
              void* notify) override;
    void Close() override;
    // The device is lost when the driver refuses to start.
    bool Start() override;
    void Stop() override;

    // What the driver has reported for both directions at the last Open.
    int Latency() override { return info_.inputLatency + info_.outputLatency; }

  private:
    // Called by the driver, on its own thread but for asioMessage.
    static void onBufferSwitch(int32_t index, int32_t direct);
    static void onSampleRateChange(double rate);
    static int32_t onMessage(int32_t selector, int32_t value, void* message, double* option);
    static ASIOTime* onBufferSwitchTimeInfo(ASIOTime* info, int32_t index, int32_t direct);

    void readDriver();
    void exchange(int32_t index);
    std::string open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int32_t frames);
    std::string refuseLoudly(const std::string& text);
    AsioError createBuffers(int32_t inputs, int32_t outputs);
    void listBuffers(int32_t inputs, int32_t outputs);

    static std::atomic<CAsioWave*> current;

    AsioDriver driver_;
    ShowDeviceError showError_;
    std::string loadRefusal_;
    AsioDriverInfo info_{};
    ASIOCallbacks callbacks_{&onBufferSwitch, &onSampleRateChange, &onMessage,
                             &onBufferSwitchTimeInfo};
};

}  // namespace tonvane
