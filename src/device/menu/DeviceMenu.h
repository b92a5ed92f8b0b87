// The devices that this computer offers, as a list to choose from.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/WaveDevice.h"
#include "device/simulated/SimulatedWave.h"

namespace tonvane {

struct DeviceEntry {
    int32_t id = 0;           // of the entry in the menu of the window
    std::string name;         // for the command line
    std::string description;  // for the person
    std::function<std::unique_ptr<CWaveDevice>()> make;
};

constexpr int32_t defaultDeviceId = 200;
constexpr int32_t firstFurtherDeviceId = 201;
constexpr int32_t simulatedDeviceId = 300;  // behind the last id that the window's menu can choose

// The devices of the platform, whether they can be opened or not, and "simulated", a loopback
// without hardware. No server is started, nothing is written.
//   Linux     "alsa", the default device of the ALSA configuration; one "jack:CLIENT" for each pair
//             of playback and capture that a running JACK server offers
//   Windows   "winmm", the devices of the wave mapper; one "asio:NAME" for each driver that the
//             registry names. They show their errors by `showError`, if there is one: a driver that
//             cannot be loaded, when its device is made, which then refuses every run; a rate or a
//             number of channels that a driver does not have, at Open.
std::vector<DeviceEntry> ListDevices(const ShowDeviceError& showError = {});

// The entry of a name or an id, listed or not. An entry without `make` when there is none.
DeviceEntry FindDevice(const std::vector<DeviceEntry>& devices, std::string_view name);

// A device by a name that is not in the list: on Linux "alsa:PCM" is the PCM of that name
// in the ALSA configuration. An entry without `make` for any other name.
DeviceEntry UnlistedDevice(std::string_view name);

// The names that UnlistedDevice takes, for the person.
struct DevicePattern {
    std::string name;
    std::string description;
};
std::vector<DevicePattern> DevicePatterns();

// The simulated device with a setup of one's own.
DeviceEntry SimulatedDevice(SimulatedSetup setup);

}  // namespace tonvane
