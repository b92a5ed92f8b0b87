// What went wrong in a run of a device, for whoever has to decide whether its capture is good.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "device/WaveDevice.h"

namespace tonvane {

// Shows the person an error in a box with the caption "Error", for the devices that do so by
// themselves. On the thread of whoever opens or chooses the device.
using ShowDeviceError = std::function<void(const std::string& text)>;

// A device implements it beside CWaveDevice if it can tell. Callable from any thread.
class DeviceFaults {
  public:
    virtual ~DeviceFaults() = default;

    // Gaps since Open in what was played or captured: the platform's own, and moments at which a
    // worker was too late with the next samples or with taking them.
    [[nodiscard]] virtual int32_t xruns() const = 0;

    // Whether the device has been lost since Open: nothing more will be played or captured, and
    // Read and Write return at once.
    [[nodiscard]] virtual bool isLost() const = 0;

    // Why the last Open was refused, as a sentence for the person without its full stop; empty if
    // it was not. Owner's thread only.
    [[nodiscard]] virtual std::string refusal() const = 0;

  protected:
    DeviceFaults() = default;
    DeviceFaults(const DeviceFaults&) = default;
    DeviceFaults& operator=(const DeviceFaults&) = default;
};

struct FaultCounts {
    int32_t xruns = 0;
    bool isLost = false;
};

// The faults of a device; none for a device that cannot tell.
inline FaultCounts FaultsOf(const CWaveDevice& device) {
    const auto* faults = dynamic_cast<const DeviceFaults*>(&device);
    return faults == nullptr ? FaultCounts{} : FaultCounts{faults->xruns(), faults->isLost()};
}

// Why a device could not be opened; empty for a device that cannot tell.
inline std::string RefusalOf(const CWaveDevice& device) {
    const auto* faults = dynamic_cast<const DeviceFaults*>(&device);
    return faults == nullptr ? std::string() : faults->refusal();
}

}  // namespace tonvane
