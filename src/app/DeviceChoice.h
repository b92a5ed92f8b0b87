// The audio device that a person names on the command line.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "commandline/CommandParser.h"
#include "device/WaveDevice.h"

namespace tonvane {

struct DeviceOptions {
    // An entry of the device menu, or simulated:FILE.qsr; empty: the menu's default device.
    std::string device;
    int32_t timeLimitS = 10;  // how long it may deliver nothing
    [[nodiscard]] std::chrono::milliseconds limit() const {
        return std::chrono::seconds(timeLimitS);
    }
};

// --device and --timeout; the latter under another name where that one is taken.
void AddDeviceOptions(Command& command, DeviceOptions& options,
                      const std::string& timeoutName = "--timeout");

// The response that the named device is made of; empty for other devices.
std::string FileOfDevice(const DeviceOptions& options);

struct ChosenDevice {
    std::string name;
    std::unique_ptr<CWaveDevice> device;
    std::optional<int32_t> rate;  // Hz, the only one that the device serves
};

// Throws InputError for a name that is not on the menu, and for a simulated device whose response
// cannot be used. The transform tables are there.
ChosenDevice ChooseDevice(const DeviceOptions& options);

}  // namespace tonvane
