#include "device/menu/DeviceMenu.h"

namespace tonvane {

std::vector<DeviceEntry> ListDevices() {
    return {SimulatedDevice({})};
}

DeviceEntry UnlistedDevice(std::string_view /*name*/) {
    return {};
}

std::vector<DevicePattern> DevicePatterns() {
    return {};
}

bool HasSoundCard() {
    return false;
}

}  // namespace tonvane
