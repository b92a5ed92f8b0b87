#include "device/menu/DeviceMenu.h"

namespace tonvane {

DeviceEntry SimulatedDevice(SimulatedSetup setup) {
    return {simulatedDeviceId, "simulated", "Loopback without hardware",
            [setup = std::move(setup)] { return std::make_unique<CSimulatedWave>(setup); }};
}

DeviceEntry FindDevice(const std::vector<DeviceEntry>& devices, std::string_view name) {
    for (const DeviceEntry& device : devices) {
        if (device.name == name || std::to_string(device.id) == name) {
            return device;
        }
    }
    return UnlistedDevice(name);
}

}  // namespace tonvane
